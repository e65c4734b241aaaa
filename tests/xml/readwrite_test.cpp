#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOM.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

using ZRXPrsUtil::ZRXMLReadWrite;

namespace {

class ReadWrite : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/zrx-readwrite-XXXXXX";
        const char* made = mkdtemp(pattern);
        ASSERT_NE(made, nullptr);
        dir = made;
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    std::string Write(const std::string& name, const std::string& text) const
    {
        std::ofstream(dir + "/" + name, std::ios::binary) << text;
        return dir + "/" + name;
    }
    static std::string Read(const std::string& path)
    {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    static std::string RootTag(const ZRXMLReadWrite& rw)
    {
        const xercesc::DOMDocument* doc = rw.GetDocument();
        return doc != nullptr ? ZRXPrsUtil::ToUTF8(doc->getDocumentElement()->getTagName())
                              : "<none>";
    }

    std::string dir;
};

const char* const kDoc = "<?xml version=\"1.0\"?>\n<PMML version=\"4.4\"><Header copyright=\"c\"/>"
                         "<DataDictionary><DataField name=\"\xC3\xA9t\xC3\xA9\"/></DataDictionary>"
                         "</PMML>";

} // namespace

TEST_F(ReadWrite, PathAndStreamGiveTheSameDocument)
{
    const std::string path = Write("doc.xml", kDoc);
    ZRXMLReadWrite fromPath;
    ZRXMLReadWrite fromStream;
    EXPECT_TRUE(fromPath.GetInitStatus().IsOK());
    EXPECT_EQ(fromPath.GetDocument(), nullptr);
    ASSERT_TRUE(fromPath.ParseToDOM(path).IsOK());
    std::istringstream stream(kDoc);
    ASSERT_TRUE(fromStream.ParseToDOM(stream).IsOK());
    EXPECT_TRUE(fromPath.GetDocument()->getDocumentElement()->isEqualNode(
        fromStream.GetDocument()->getDocumentElement()));
    EXPECT_EQ(RootTag(fromPath), "PMML");
    EXPECT_TRUE(fromPath.GetXercesMessage().empty());
}

TEST_F(ReadWrite, FailedParseGives104AndDropsTheDocument)
{
    const std::string good = Write("good.xml", kDoc);
    const std::vector<std::string> bad = {
        dir + "/missing.xml",
        Write("text.xml", "plain text"),
        Write("cut.xml", "<PMML><Header>"),
        Write("twice.xml", "<a/><b/>"),
        Write("utf8.xml", "<a v=\"\xFF\xFE\"/>"),
        Write("entity.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>"),
        Write("undeclared.xml", "<a>&nope;</a>"),
        "",
    };
    ZRXMLReadWrite rw;
    for (const std::string& path : bad) {
        SCOPED_TRACE(path);
        ASSERT_TRUE(rw.ParseToDOM(good).IsOK());
        ASSERT_NE(rw.GetDocument(), nullptr);
        const ZRCommon::ZRStatus status = rw.ParseToDOM(path);
        EXPECT_EQ(status.GetCode(), 104);
        EXPECT_FALSE(status.GetFlag());
        EXPECT_EQ(rw.GetDocument(), nullptr);
        EXPECT_TRUE(rw.GetInitStatus().IsOK());
    }
    EXPECT_TRUE(rw.ParseToDOM(good).IsOK());
    EXPECT_TRUE(rw.GetXercesMessage().empty());
    std::istringstream broken("<a>");
    EXPECT_EQ(rw.ParseToDOM(broken).GetCode(), 104);
    EXPECT_EQ(rw.GetDocument(), nullptr);
}

TEST_F(ReadWrite, WritesOwnOrForeignDocumentWithoutIndentation)
{
    ZRXMLReadWrite reader;
    ASSERT_TRUE(reader.ParseToDOM(Write("in.xml", kDoc)).IsOK());

    // Nothing held and nothing given: OK, no file.
    ZRXMLReadWrite writer;
    EXPECT_TRUE(writer.WriteFromDOM(dir + "/none.xml").IsOK());
    EXPECT_FALSE(std::filesystem::exists(dir + "/none.xml"));

    // A writer that never parsed writes another owner's document.
    ASSERT_TRUE(writer.WriteFromDOM(dir + "/foreign.xml", reader.GetDocument()).IsOK());
    ASSERT_TRUE(reader.WriteFromDOM(dir + "/own.xml").IsOK());
    const std::string text = Read(dir + "/own.xml");
    EXPECT_EQ(text, Read(dir + "/foreign.xml"));
    EXPECT_NE(text.find("<PMML version=\"4.4\"><Header copyright=\"c\"/><DataDictionary>"),
              std::string::npos)
        << text;

    // What was written reads back as the same document.
    ZRXMLReadWrite again;
    ASSERT_TRUE(again.ParseToDOM(dir + "/own.xml").IsOK());
    EXPECT_TRUE(again.GetDocument()->getDocumentElement()->isEqualNode(
        reader.GetDocument()->getDocumentElement()));
}

TEST_F(ReadWrite, UnwritableFileGives118AndKeepsTheDocument)
{
    ZRXMLReadWrite rw;
    ASSERT_TRUE(rw.ParseToDOM(Write("in.xml", kDoc)).IsOK());
    const std::vector<std::string> bad = {dir + "/no/such/dir/out.xml", dir, "", "/dev/full"};
    for (const std::string& path : bad) {
        if (path == "/dev/full" && !std::filesystem::exists(path))
            continue;
        SCOPED_TRACE(path);
        const ZRCommon::ZRStatus status = rw.WriteFromDOM(path);
        EXPECT_EQ(status.GetCode(), 118);
        EXPECT_FALSE(status.GetFlag());
        EXPECT_NE(rw.GetDocument(), nullptr);
    }
    EXPECT_TRUE(rw.WriteFromDOM(dir + "/out.xml").IsOK());
}
