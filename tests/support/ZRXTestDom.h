// Test support: keeps the XML library started for a test and turns document
// text into a DOM through the library's own parser.
#ifndef ZRX_TEST_DOM_H
#define ZRX_TEST_DOM_H

#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace zrxtest {

// One Initialize on construction, one Terminate on destruction.
struct XercesSession {
    XercesSession() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XercesSession() { xercesc::XMLPlatformUtils::Terminate(); }
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;
};

// A document parsed from text by a parser of NewDOMParser; the document
// lives as long as the object.
class ParsedDoc {
public:
    explicit ParsedDoc(const std::string& text) : m_parser(ZRXPrsUtil::NewDOMParser())
    {
        std::istringstream stream(text);
        ZRXPrsUtil::ZRXInputSource source(stream);
        m_status = ZRXPrsUtil::ParseWithParser(*m_parser, &source, nullptr, m_message);
    }
    ZRCommon::ZRStatus Status() const { return m_status; }
    const std::string& Message() const { return m_message; }
    xercesc::DOMDocument* Doc() const { return m_status.IsOK() ? m_parser->getDocument() : nullptr; }
    const xercesc::DOMElement& Root() const { return *Doc()->getDocumentElement(); }

private:
    std::unique_ptr<xercesc::XercesDOMParser> m_parser;
    ZRCommon::ZRStatus m_status;
    std::string m_message;
};

inline std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// UTF-16 text of a UTF-8 literal, for comparisons.
inline std::u16string U16(const XMLCh* text) { return text ? std::u16string(text) : std::u16string(); }

} // namespace zrxtest

#endif
