// Test support: keeps the XML library started, turns document text into a
// DOM through the library's own parser, reads files, makes test folders.
#ifndef ZRX_TEST_DOM_H
#define ZRX_TEST_DOM_H

#include "ZRXPlatform.h"
#include "ZRXPrsUtilInternal.h"

#include <gtest/gtest.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <unistd.h>

#include <filesystem>
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

// A fresh folder for one test, removed with the object.
class TempDir {
public:
    explicit TempDir(const std::string& name)
        : m_path(std::filesystem::temp_directory_path() /
                 ("zrx_" + name + "_" + std::to_string(::getpid())))
    {
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~TempDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::string Path() const { return m_path.string(); }
    std::string File(const std::string& name) const { return (m_path / name).string(); }
    std::string Write(const std::string& name, const std::string& text) const
    {
        std::ofstream out(File(name), std::ios::binary);
        out << text;
        return File(name);
    }

private:
    std::filesystem::path m_path;
};

} // namespace zrxtest

#endif
