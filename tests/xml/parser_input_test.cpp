// Making and running the library's DOM parsers: the std::istream source,
// failed parses of every kind giving 104 without an exception, documents that
// try to read local files or expand entities without bound, and documents
// without a DOCTYPE giving the same DOM as a parser left at its defaults.
#include "ZRXTestDom.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMLSSerializer.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/XMLString.hpp>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <streambuf>

using namespace ZRXPrsUtil;

namespace {

class Parsing : public ::testing::Test {
protected:
    zrxtest::XercesSession session;
};

// The document as text, for comparing two DOMs.
std::string Serialize(const xercesc::DOMDocument& doc)
{
    xercesc::DOMImplementation* impl =
        xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
    std::unique_ptr<xercesc::DOMLSSerializer, void (*)(xercesc::DOMLSSerializer*)> writer(
        impl->createLSSerializer(), [](xercesc::DOMLSSerializer* w) { w->release(); });
    XMLCh* text = writer->writeToString(&doc);
    const std::string result = ToUTF8(text);
    xercesc::XMLString::release(&text);
    return result;
}

// Everything the document holds: its markup and the text of its elements
// (entity references are written as references, so their text is added).
std::string Content(xercesc::XercesDOMParser& parser)
{
    const xercesc::DOMDocument* doc = parser.getDocument();
    if (!doc)
        return "";
    std::string content = Serialize(*doc);
    if (doc->getDocumentElement())
        content += ToUTF8(doc->getDocumentElement()->getTextContent());
    return content;
}

// A stream buffer that hands out some bytes, then throws.
class ThrowingBuf : public std::streambuf {
public:
    explicit ThrowingBuf(std::string head) : m_head(std::move(head))
    {
        setg(&m_head[0], &m_head[0], &m_head[0] + m_head.size());
    }

protected:
    int_type underflow() override { throw std::runtime_error("disk gone"); }

private:
    std::string m_head;
};

ZRCommon::ZRStatus ParseText(const std::string& text, std::string* serialized = nullptr,
                             std::string* message = nullptr)
{
    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    std::istringstream stream(text);
    ZRXInputSource source(stream);
    std::string msg = "stale";
    const ZRCommon::ZRStatus status = ParseWithParser(*parser, &source, nullptr, msg);
    if (serialized)
        *serialized = Content(*parser);
    if (message)
        *message = msg;
    return status;
}

const char* const kBillionLaughs =
    "<?xml version='1.0'?><!DOCTYPE lolz [<!ENTITY lol 'lol'>"
    "<!ENTITY lol1 '&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;'>"
    "<!ENTITY lol2 '&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;'>"
    "<!ENTITY lol3 '&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;'>"
    "<!ENTITY lol4 '&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;'>"
    "<!ENTITY lol5 '&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;'>"
    "<!ENTITY lol6 '&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;'>"
    "<!ENTITY lol7 '&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;'>"
    "<!ENTITY lol8 '&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;'>"
    "<!ENTITY lol9 '&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;'>"
    "]><DataModel><Fields><Field name='&lol9;' storage='string' measure='nominal'/>"
    "</Fields></DataModel>";

} // namespace

TEST_F(Parsing, StreamSourceGivesTheSameDocumentAsAMemorySource)
{
    const std::string text = "<?xml version='1.0' encoding='UTF-8'?>\n<DataModel a='\xC3\xA9'>"
                             "<Fields><Field name='x'/></Fields></DataModel>";
    std::string fromStream;
    ASSERT_TRUE(ParseText(text, &fromStream).IsOK());

    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    xercesc::MemBufInputSource memory(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                      "memory");
    std::string message;
    ASSERT_TRUE(ParseWithParser(*parser, &memory, nullptr, message).IsOK());
    EXPECT_EQ(Serialize(*parser->getDocument()), fromStream);
    EXPECT_NE(fromStream.find("Field name=\"x\""), std::string::npos);
}

TEST_F(Parsing, EveryFailedParseGives104WithoutAnException)
{
    const std::string cases[] = {
        "",
        "   \n",
        "<DataModel><Fields>",                       // truncated
        "<DataModel><Fields></DataModel>",           // mismatched end tag
        "<DataModel a='1' a='2'/>",                  // attribute twice
        "<a/><b/>",                                  // two roots
        "<DataModel>\xC3</DataModel>",               // bad UTF-8 inside text
        std::string("\x00\x01\xFF\xFE garbage \x89PNG\r\n", 18),
        "<?xml version='1.0' encoding='no-such-encoding'?><a/>",
    };
    for (const std::string& text : cases) {
        std::string message;
        EXPECT_EQ(ParseText(text, nullptr, &message).GetCode(), 104) << text;
    }
    // The stream itself fails in the middle of the document.
    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    std::string message;
    for (const std::string& head : {std::string(), std::string("<DataModel><Fields>")}) {
        ThrowingBuf buffer(head);
        std::istream stream(&buffer);
        stream.exceptions(std::ios::badbit);
        ZRXInputSource source(stream);
        EXPECT_EQ(ParseWithParser(*parser, &source, nullptr, message).GetCode(), 104) << head;
    }
    // A file that isn't there.
    EXPECT_EQ(ParseWithParser(*parser, nullptr, "/no/such/dir/doc.xml", message).GetCode(), 104);
    // A good parse after all that empties the message.
    const std::string path = std::string(ZRX_TEST_DATA_DIR) + "/xml/small.xml";
    EXPECT_TRUE(ParseWithParser(*parser, nullptr, path.c_str(), message).IsOK());
    EXPECT_EQ(message, "");
}

TEST_F(Parsing, StreamsThatThrowAtTheirEndStillRead)
{
    std::istringstream stream("<DataModel><Fields/></DataModel>");
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    ZRXInputSource source(stream);
    std::string message;
    EXPECT_TRUE(ParseWithParser(*parser, &source, nullptr, message).IsOK());
}

TEST_F(Parsing, ExternalEntitiesAndDtdsAreNotRead)
{
    const std::string canary = std::string(ZRX_TEST_DATA_DIR) + "/xml/canary.txt";
    ASSERT_NE(zrxtest::ReadFile(canary).find("secret-canary"), std::string::npos);
    const std::string url = "file://" + canary;
    const std::string general = "<!DOCTYPE DataModel [<!ENTITY x SYSTEM '" + url +
                                "'>]><DataModel><Fields>&x;</Fields></DataModel>";
    const std::string parameter = "<!DOCTYPE DataModel [<!ENTITY % p SYSTEM '" + url +
                                  "'> %p;]><DataModel><Fields/></DataModel>";
    {
        // A parser at the XML library's defaults does read the file.
        xercesc::XercesDOMParser plain;
        std::istringstream stream(general);
        ZRXInputSource source(stream);
        plain.parse(source);
        ASSERT_NE(Content(plain).find("secret-canary"), std::string::npos);
    }
    for (const std::string& text : {general, parameter}) {
        std::string dom, message;
        EXPECT_EQ(ParseText(text, &dom, &message).GetCode(), 104) << text;
        EXPECT_EQ(dom.find("secret-canary"), std::string::npos);
        EXPECT_EQ(message.find("secret-canary"), std::string::npos);
    }
    // An external DTD is not loaded at all (loading this one would fail),
    // so the document itself parses.
    std::string dom;
    EXPECT_TRUE(ParseText("<!DOCTYPE DataModel SYSTEM 'file:///no/such/model.dtd'>"
                          "<DataModel><Fields/></DataModel>", &dom).IsOK());
    EXPECT_NE(dom.find("<Fields/>"), std::string::npos);
    // Internal entities still work as XML has them.
    EXPECT_TRUE(ParseText("<!DOCTYPE r [<!ENTITY n 'income'>]><r name='&n;'/>", &dom).IsOK());
    EXPECT_NE(dom.find("name=\"income\""), std::string::npos);
}

// Has a CTest timeout: a parser that expands without bound fails the test
// instead of hanging it.
TEST_F(Parsing, BillionLaughsStopsAtTheExpansionLimit)
{
    std::string dom;
    EXPECT_EQ(ParseText(kBillionLaughs, &dom).GetCode(), 104);
    EXPECT_LT(dom.size(), 1000000u);
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
    int compared = 0;
    for (const std::string& path : files) {
        const std::string text = zrxtest::ReadFile(path);
        ASSERT_FALSE(text.empty()) << path;
        if (text.find("<!DOCTYPE") != std::string::npos)
            continue;
        xercesc::XercesDOMParser plain;
        std::istringstream stream(text);
        ZRXInputSource source(stream);
        plain.parse(source);
        ASSERT_EQ(plain.getErrorCount(), 0u) << path;
        std::string hardened;
        ASSERT_TRUE(ParseText(text, &hardened).IsOK()) << path;
        EXPECT_EQ(Content(plain), hardened) << path;
        ++compared;
    }
    EXPECT_GE(compared, 2);
}
