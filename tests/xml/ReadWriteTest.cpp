// The document reader and writer (failed parses are in parser_input_test).
#include "ZRXTestDom.h"

#include <zrparsexmlr/ZRXMLReadWrite.h>

#include <cstdlib>
#include <filesystem>

using ZRXPrsUtil::ZRXMLReadWrite;

namespace {

const std::string kSmall = ZRX_TEST_DATA_DIR "/xml/small.xml";

class ReadWrite : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/zrx-readwrite-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        ASSERT_TRUE(reader.ParseToDOM(kSmall).IsOK());
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    std::string dir;
    ZRXMLReadWrite reader;
};

} // namespace

TEST_F(ReadWrite, ReadsAndWritesOwnOrForeignDocumentsWithoutIndentation)
{
    ZRXMLReadWrite fromStream;
    EXPECT_EQ(fromStream.GetDocument(), nullptr);
    std::istringstream stream(zrxtest::ReadFile(kSmall));
    ASSERT_TRUE(fromStream.ParseToDOM(stream).IsOK());
    EXPECT_TRUE(reader.GetDocument()->isEqualNode(fromStream.GetDocument()));
    // Nothing held and nothing given: OK, no file.
    ZRXMLReadWrite writer;
    EXPECT_TRUE(writer.WriteFromDOM(dir + "/none.xml").IsOK());
    EXPECT_FALSE(std::filesystem::exists(dir + "/none.xml"));
    // A writer that never parsed writes another owner's document.
    ASSERT_TRUE(writer.WriteFromDOM(dir + "/foreign.xml", reader.GetDocument()).IsOK());
    ASSERT_TRUE(reader.WriteFromDOM(dir + "/own.xml").IsOK());
    const std::string text = zrxtest::ReadFile(dir + "/own.xml");
    EXPECT_EQ(text, zrxtest::ReadFile(dir + "/foreign.xml"));
    EXPECT_NE(text.find("<Application name=\"t\" version=\"1\"/></Header>"), std::string::npos)
        << text;
    // What was written reads back as the same document.
    ZRXMLReadWrite again;
    ASSERT_TRUE(again.ParseToDOM(dir + "/own.xml").IsOK());
    EXPECT_TRUE(reader.GetDocument()->isEqualNode(again.GetDocument()));
}

TEST_F(ReadWrite, UnwritableFileGives118AndKeepsTheDocument)
{
    for (const std::string& path :
         {dir + "/no/such/dir/out.xml", dir, std::string(), std::string("/dev/full")}) {
        const ZRCommon::ZRStatus status = reader.WriteFromDOM(path);
        EXPECT_EQ(status.GetCode(), 118) << path;
        EXPECT_FALSE(status.GetFlag());
        EXPECT_NE(reader.GetDocument(), nullptr);
    }
    EXPECT_TRUE(reader.WriteFromDOM(dir + "/out.xml").IsOK());
}
