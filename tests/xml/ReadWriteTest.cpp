// The document reader and writer (failed parses are in parser_input_test).
#include "ZRXTestDom.h"

#include <zrparsexmlr/ZRXMLReadWrite.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using ZRXPrsUtil::ZRXMLReadWrite;

namespace {

const std::string kSmall = ZRX_TEST_DATA_DIR "/xml/small.xml";

class ReadWrite : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(reader.ParseToDOM(kSmall).IsOK()); }

    zrxtest::TempDir temp{"readwrite"};
    const std::string dir = temp.Path();
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
    EXPECT_TRUE(reader.WriteFromDOM("/dev/null").IsOK());
}

// A write replaces the file whole or not at all. In a child process whose
// files may not grow past 100 bytes (a full disk, unprivileged), the write
// fails with 118 and the old file is left as it was, permission bits
// included, with nothing beside it; a symbolic link is written through and
// stays a link.
TEST_F(ReadWrite, FailedWriteLeavesTheFileAsItWas)
{
    namespace fs = std::filesystem;
    fs::create_directory(dir + "/real");
    fs::create_symlink("real/target.xml", dir + "/link.xml");
    for (const std::string name : {"/real/target.xml", "/link.xml"}) {
        for (const bool diskFull : {true, false}) {
            SCOPED_TRACE(name + (diskFull ? " full" : ""));
            std::ofstream(dir + "/real/target.xml") << "yesterday's model";
            fs::permissions(dir + "/real/target.xml", fs::perms(0640));
            const pid_t child = fork();
            ASSERT_GE(child, 0);
            if (child == 0) {
                const rlimit limit = {100, 100};
                signal(SIGXFSZ, SIG_IGN);
                if (diskFull)
                    setrlimit(RLIMIT_FSIZE, &limit);
                const long code = reader.WriteFromDOM(dir + name).GetCode();
                _exit(code == 0 ? 0 : code == 118 ? 1 : 2);
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            EXPECT_TRUE(WIFEXITED(status));
            EXPECT_EQ(WEXITSTATUS(status), diskFull ? 1 : 0);
            EXPECT_EQ(zrxtest::ReadFile(dir + "/real/target.xml") == "yesterday's model", diskFull);
            EXPECT_EQ(fs::status(dir + "/real/target.xml").permissions(), fs::perms(0640));
            EXPECT_TRUE(fs::is_symlink(dir + "/link.xml"));
            EXPECT_EQ(
                std::distance(fs::directory_iterator(dir + "/real"), fs::directory_iterator()), 1);
        }
    }
}
