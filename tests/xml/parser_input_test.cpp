// Making and running the library's DOM parsers: failed parses of every kind
// give 104 without an exception, hostile documents read no file and stop
// expanding, and documents without a DOCTYPE give the same DOM as a parser at
// the XML library's defaults.
#include "ZRXTestDom.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMLSSerializer.hpp>
#include <xercesc/util/XMLString.hpp>

#include <filesystem>
#include <stdexcept>

using namespace ZRXPrsUtil;

namespace {

using Parsing = zrxtest::XercesTest;

// The parser's document as text plus the text of its elements (entity
// references are written as references, so their text is added).
std::string Content(xercesc::XercesDOMParser& parser)
{
    const xercesc::DOMDocument* doc = parser.getDocument();
    if (!doc)
        return "";
    xercesc::DOMLSSerializer* writer =
        xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS")->createLSSerializer();
    XMLCh* text = writer->writeToString(doc);
    std::string content = ToUTF8(text);
    xercesc::XMLString::release(&text);
    writer->release();
    if (doc->getDocumentElement())
        content += ToUTF8(doc->getDocumentElement()->getTextContent());
    return content;
}

// Hands out `head`, then throws.
struct ThrowingBuf : std::streambuf {
    explicit ThrowingBuf(std::string text) : head(std::move(text))
    {
        setg(&head[0], &head[0], &head[0] + head.size());
    }
    int_type underflow() override { throw std::runtime_error("disk gone"); }
    std::string head;
};

std::string Laughs()
{
    std::string doc = "<!DOCTYPE DataModel [<!ENTITY l0 'ha'>";
    for (int i = 1; i <= 9; ++i) {
        doc += "<!ENTITY l" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k)
            doc += "&l" + std::to_string(i - 1) + ";";
        doc += "'>";
    }
    return doc + "]><DataModel a='&l9;'><Fields/></DataModel>";
}

} // namespace

TEST_F(Parsing, EveryFailedParseGives104WithoutAnException)
{
    for (const std::string& text :
         {std::string(), std::string("<DataModel><Fields>"), std::string("<a></b>"),
          std::string("<a x='1' x='2'/>"), std::string("<a/><b/>"), std::string("<a>\xC3</a>"),
          std::string("\x00\x01\xFF\xFE \x89PNG\r\n", 12),
          std::string("<?xml version='1.0' encoding='no-such'?><a/>")}) {
        zrxtest::ParsedDoc doc(text);
        EXPECT_EQ(doc.status.GetCode(), 104) << text;
        EXPECT_FALSE(doc.status.GetFlag());
    }
    // The stream throws before or inside the document.
    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    std::string message = "stale";
    for (const char* head : {"", "<DataModel><Fields>"}) {
        ThrowingBuf buffer(head);
        std::istream stream(&buffer);
        stream.exceptions(std::ios::badbit);
        ZRXInputSource source(stream);
        EXPECT_EQ(ParseWithParser(*parser, &source, nullptr, message).GetCode(), 104) << head;
    }
    EXPECT_EQ(ParseWithParser(*parser, nullptr, "/no/such/doc.xml", message).GetCode(), 104);
    // A stream that throws at its end reads like any other; a path works too.
    std::istringstream stream("<DataModel/>");
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    ZRXInputSource source(stream);
    EXPECT_TRUE(ParseWithParser(*parser, &source, nullptr, message).IsOK());
    const std::string path = std::string(ZRX_TEST_DATA_DIR) + "/xml/small.xml";
    EXPECT_TRUE(ParseWithParser(*parser, nullptr, path.c_str(), message).IsOK());
    EXPECT_EQ(message, "");
}

// These tests have a CTest timeout: a parser that expands without bound
// fails instead of hanging.
TEST_F(Parsing, HostileDocumentsReadNoFileAndStopExpanding)
{
    const std::string url = "file://" + std::string(ZRX_TEST_DATA_DIR) + "/xml/canary.txt";
    const std::string general =
        "<!DOCTYPE r [<!ENTITY x SYSTEM '" + url + "'>]><r><f>&x;</f><g a='1'/></r>";
    {
        // A parser at the XML library's defaults does read the file.
        xercesc::XercesDOMParser plain;
        std::istringstream stream(general);
        plain.parse(ZRXInputSource(stream));
        ASSERT_NE(Content(plain).find("secret-canary"), std::string::npos);
    }
    const std::string parameter =
        "<!DOCTYPE r [<!ENTITY % p SYSTEM '" + url + "'> %p;]><r/>";
    for (const std::string& text : {general, parameter, Laughs()}) {
        zrxtest::ParsedDoc doc(text);
        EXPECT_EQ(doc.status.GetCode(), 104);
        const std::string content = Content(*doc.parser) + doc.message;
        EXPECT_EQ(content.find("secret-canary"), std::string::npos);
        EXPECT_LT(content.size(), 100000u);
    }
    // An external DTD is skipped (loading this one would fail); internal
    // entities work as XML has them.
    zrxtest::ParsedDoc dtd("<!DOCTYPE r SYSTEM 'file:///no/such.dtd'><r/>");
    EXPECT_TRUE(dtd.status.IsOK());
    zrxtest::ParsedDoc internal("<!DOCTYPE r [<!ENTITY n 'income'>]><r name='&n;'/>");
    EXPECT_EQ(ToUTF8(GetAttribute(internal.Root(), "name")), "income");
}

TEST_F(Parsing, DocumentsWithoutDoctypeGiveTheSameDomAsTheDefaultParser)
{
    std::vector<std::string> files = {std::string(ZRX_TEST_DATA_DIR) + "/xml/small.xml",
                                      std::string(ZRX_EXAMPLES_DIR) + "/data/job.datamodel.xml"};
    const std::filesystem::path corpus = std::filesystem::path(ZRX_CORPUS_DIR) / "pmml";
    if (std::filesystem::is_directory(corpus)) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus))
            if (entry.is_regular_file())
                files.push_back(entry.path().string());
    } else if (ZRX_REQUIRE_CORPUS) {
        FAIL() << "corpus missing: " << corpus;
    }
    for (const std::string& path : files) {
        const std::string text = zrxtest::ReadFile(path);
        ASSERT_FALSE(text.empty()) << path;
        ASSERT_EQ(text.find("<!DOCTYPE"), std::string::npos) << path;
        xercesc::XercesDOMParser plain;
        std::istringstream stream(text);
        plain.parse(ZRXInputSource(stream));
        ASSERT_EQ(plain.getErrorCount(), 0u) << path;
        zrxtest::ParsedDoc hardened(text);
        ASSERT_TRUE(hardened.status.IsOK()) << path;
        EXPECT_EQ(Content(plain), Content(*hardened.parser)) << path;
    }
}
