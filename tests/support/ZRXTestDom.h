// Test support: keeps the XML library started and turns document text into
// a DOM through the library's own parser.
#ifndef ZRX_TEST_DOM_H
#define ZRX_TEST_DOM_H

#include "ZRXPlatform.h"
#include "ZRXPrsUtilInternal.h"

#include <gtest/gtest.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace zrxtest {

// One share of the XML library (ZRXPlatform) from construction to
// destruction: the first share starts it, the last one ends it.
struct XercesSession {
    XercesSession() : held(ZRXPrsUtil::ZRXPlatform::Acquire()) {}
    ~XercesSession()
    {
        if (held)
            ZRXPrsUtil::ZRXPlatform::Release();
    }
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;
    const bool held;
};

// A test with the XML library started for its duration.
class XercesTest : public ::testing::Test {
    XercesSession m_session;
};

// `text` parsed by a parser of NewDOMParser, which owns the document.
struct ParsedDoc {
    explicit ParsedDoc(const std::string& text) : parser(ZRXPrsUtil::NewDOMParser())
    {
        std::istringstream stream(text);
        ZRXPrsUtil::ZRXInputSource source(stream);
        status = ZRXPrsUtil::ParseWithParser(*parser, &source, nullptr, message);
    }
    const xercesc::DOMElement& Root() const { return *parser->getDocument()->getDocumentElement(); }

    std::unique_ptr<xercesc::XercesDOMParser> parser;
    ZRCommon::ZRStatus status;
    std::string message;
};

inline std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

} // namespace zrxtest

#endif
