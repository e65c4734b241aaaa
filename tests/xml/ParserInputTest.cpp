// Making and running the library's DOM parsers: failed parses of every kind
// give 104 with the XML library's message and no exception, hostile documents
// read no file and stop expanding, and documents without a DOCTYPE give the
// same DOM as a parser at the XML library's defaults.
#include "ZRXCorpus.h"
#include "ZRXTestDom.h"

#include <zrparsexmlr/ZRXMLReadWrite.h>

#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace ZRXPrsUtil;
namespace fs = std::filesystem;

namespace {

using Parsing = zrxtest::XercesTest;
const std::string kData = ZRX_TEST_DATA_DIR "/xml/";

// The text of the parser's document, which holds what an entity brought in.
std::string Text(xercesc::XercesDOMParser& parser)
{
    const xercesc::DOMDocument* doc = parser.getDocument();
    return doc && doc->getDocumentElement() ? ToUTF8(doc->getDocumentElement()->getTextContent())
                                            : "";
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

} // namespace

// Every document of data/xml/bad (not well-formed, bad bytes, unknown
// encoding, external entities, runaway expansion) and a missing file: 104
// with a message, by path through the parse helper and as a stream through
// the document reader, which also drops its earlier document. The hostile
// ones read no file and stay small. A CTest timeout turns an expansion
// without bound into a failure.
TEST_F(Parsing, EveryFailedParseGives104WithTheXmlLibrarysMessage)
{
    std::vector<std::string> paths = {kData + "no-such.xml"};
    for (const auto& entry : fs::directory_iterator(kData + "bad"))
        paths.push_back(entry.path().string());
    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    ZRXMLReadWrite reader;
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        std::string message;
        EXPECT_EQ(ParseWithParser(*parser, nullptr, path.c_str(), message).GetCode(), 104);
        EXPECT_NE(message, "");
        const std::string content = Text(*parser) + message;
        EXPECT_EQ(content.find("secret-canary"), std::string::npos);
        EXPECT_LT(content.size(), 100000u);
        ASSERT_TRUE(reader.ParseToDOM(kData + "small.xml").IsOK());
        std::istringstream stream(zrxtest::ReadFile(path));
        const ZRCommon::ZRStatus status = reader.ParseToDOM(stream);
        EXPECT_EQ(status.GetCode(), 104);
        EXPECT_FALSE(status.GetFlag());
        EXPECT_EQ(reader.GetDocument(), nullptr);
        EXPECT_NE(reader.GetXercesMessage(), "");
    }
    // A folder is refused before the XML library, which leaks on one, sees it.
    EXPECT_EQ(reader.ParseToDOM(kData + "bad").GetCode(), 104);
    EXPECT_NE(reader.GetXercesMessage(), "");
    EXPECT_TRUE(reader.GetInitStatus().IsOK());
    EXPECT_TRUE(reader.ParseToDOM(kData + "small.xml").IsOK());
    EXPECT_EQ(reader.GetXercesMessage(), "");
    // The stream breaks before, inside or after the document, with or
    // without an exception mask of the caller: the whole document was not
    // read, and the reader stays usable.
    for (const char* head : {"", "<DataModel><Fields>", "<DataModel/>"}) {
        for (const auto mask : {std::ios::badbit, std::ios::goodbit}) {
            ThrowingBuf buffer(head);
            std::istream stream(&buffer);
            stream.exceptions(mask);
            ZRXInputSource source(stream);
            std::string message;
            EXPECT_EQ(ParseWithParser(*parser, &source, nullptr, message).GetCode(), 104) << head;
            EXPECT_NE(message, "") << head;
            stream.clear();
            EXPECT_EQ(reader.ParseToDOM(stream).GetCode(), 104) << head;
            EXPECT_TRUE(reader.ParseToDOM(kData + "small.xml").IsOK());
        }
    }
    // A file cut short while it is read: what its writer gives before it
    // stops is half a document.
    const std::string fifo = fs::temp_directory_path() / ("zrx-cut-" + std::to_string(getpid()));
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::thread writer([&fifo] {
        const std::string text = zrxtest::ReadFile(kData + "small.xml");
        std::ofstream(fifo, std::ios::binary).write(text.data(), text.size() / 2);
    });
    EXPECT_EQ(reader.ParseToDOM(fifo).GetCode(), 104);
    writer.join();
    fs::remove(fifo);
}

// The tag of the document element, read up to its start tag: what comes after
// it is not read, what comes before it must be well-formed.
TEST_F(Parsing, DocumentElementTagIsReadUpToItsStartTag)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<?xml version='1.0'?><!-- <PMML> --><?pi <x>?><!DOCTYPE d [<!ENTITY e 'v'>]>"
         "<DataModel a='&e;'><Fields><",
         "DataModel"},
        {"\xEF\xBB\xBF<ns1:PMML xmlns:ns1='u'/>", "ns1:PMML"},
        {"<!DOCTYPE r SYSTEM 'file:///no/such.dtd'><r/>", "r"},
        {"<!-- only a comment -->", ""},
        {"<<PMML/>", ""},
        {"", ""},
    };
    for (const auto& [text, tag] : cases) {
        std::istringstream stream(text);
        std::string read = "stale";
        EXPECT_EQ(GetDocumentElementTag(stream, read), *tag != 0) << text;
        EXPECT_EQ(read, tag) << text;
    }
}

TEST_F(Parsing, HostileEntitiesAreRefusedAndInternalOnesWork)
{
    // A parser at the XML library's defaults does read the file.
    xercesc::XercesDOMParser plain;
    plain.parse((kData + "bad/external_entity.xml").c_str());
    ASSERT_NE(Text(plain).find("secret-canary"), std::string::npos);
    // The external DTD is skipped; a stream that throws at its end reads
    // like any other.
    std::unique_ptr<xercesc::XercesDOMParser> parser(NewDOMParser());
    std::istringstream stream("<!DOCTYPE r SYSTEM 'file:///no/such.dtd'><r/>");
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    ZRXInputSource source(stream);
    std::string message = "stale";
    EXPECT_TRUE(ParseWithParser(*parser, &source, nullptr, message).IsOK());
    EXPECT_EQ(message, "");
    zrxtest::ParsedDoc internal("<!DOCTYPE r [<!ENTITY n 'income'>]><r name='&n;'/>");
    EXPECT_EQ(ToUTF8(GetAttribute(internal.Root(), "name")), "income");
}

// In four shards of the corpus, the first with two documents of our own.
class ParsingCorpus : public zrxtest::XercesTest, public ::testing::WithParamInterface<int> {};

TEST_P(ParsingCorpus, DocumentsWithoutDoctypeGiveTheSameDomAsTheDefaultParser)
{
    std::vector<std::string> files;
    if (GetParam() == 0)
        files = {kData + "small.xml", std::string(ZRX_EXAMPLES_DIR) + "/data/job.datamodel.xml"};
    for (const zrxtest::CorpusFile& document : zrxtest::CorpusShard(GetParam(), 4))
        files.push_back(document.path.string());
    for (const std::string& path : files) {
        const std::string text = zrxtest::ReadFile(path);
        ASSERT_EQ(text.find("<!DOCTYPE"), std::string::npos) << path;
        xercesc::XercesDOMParser plain;
        std::istringstream stream(text);
        plain.parse(ZRXInputSource(stream));
        ASSERT_EQ(plain.getErrorCount(), 0u) << path;
        zrxtest::ParsedDoc hardened(text);
        ASSERT_TRUE(hardened.status.IsOK()) << path;
        EXPECT_TRUE(plain.getDocument()->isEqualNode(hardened.parser->getDocument())) << path;
    }
}

INSTANTIATE_TEST_SUITE_P(Shards, ParsingCorpus, ::testing::Range(0, 4));
