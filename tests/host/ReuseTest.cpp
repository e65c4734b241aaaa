// Repeated documents: an object kept for thousands of documents holds the
// memory of one document, not of all it has read.
#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstddef>
#include <functional>
#include <sstream>
#include <string>

// Given by the sanitizers' allocators, whose memory mallinfo2 does not see.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

using ZRMTD_NAMESPACE::ZRVarList;

std::size_t LiveBytes()
{
    if (__sanitizer_get_current_allocated_bytes)
        return __sanitizer_get_current_allocated_bytes();
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Runs `parse` 250 times after 20 first ones: the live heap may grow by 128
// bytes a parse, a small part of one document's DOM, which is some hundred KB
// for the documents below. The count of live bytes is exact (freed memory in
// a sanitizer's quarantine is not live), so a short run tells; it stops early
// once the growth is past the allowed.
void ExpectHoldsOneDocument(const std::function<bool()>& parse)
{
    const std::size_t kParses = 250, kAllowedGrowth = 32 * 1024;
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(parse());
    const std::size_t before = LiveBytes();
    for (std::size_t done = 0; done < kParses && LiveBytes() <= before + kAllowedGrowth;)
        for (int i = 0; i < 50; ++i, ++done)
            ASSERT_TRUE(parse()) << "parse " << done;
    EXPECT_LE(LiveBytes(), before + kAllowedGrowth);
}

std::string Dictionary(int fields)
{
    std::string text = "<PMML version=\"4.4\"><DataDictionary>";
    for (int i = 0; i < fields; ++i)
        text += "<DataField name=\"f" + std::to_string(i) +
                "\" optype=\"categorical\" dataType=\"string\"><Value value=\"a\"/>"
                "<Value value=\"b\"/></DataField>";
    return text + "</DataDictionary>";
}

// Also with the fields kept out of the DOM: their records go with the parse.
TEST(Reuse, PMMLReaderHoldsOneDocument)
{
    const std::string text = Dictionary(40) + "</PMML>";
    for (const bool fieldsInDOM : {true, false}) {
        ZRXPrsUtil::ZRPMMLParser reader;
        reader.SetFieldsInDOM(fieldsInDOM);
        ExpectHoldsOneDocument([&] {
            std::istringstream in(text);
            ZRVarList vars;
            return reader.ParseToDOM(in).IsOK() && reader.FillVarList(vars, {}, false).IsOK();
        });
    }
}

TEST(Reuse, SettingsReaderHoldsOneDocument)
{
    const std::string text = Dictionary(40) +
                             "<MiningBuildTask><Extension><Parameters>"
                             "<Parameter name=\"p\" value=\"1\"/></Parameters></Extension>"
                             "</MiningBuildTask></PMML>";
    ZRXPrsUtil::ZRSettingsParser settings;
    ExpectHoldsOneDocument([&] {
        std::istringstream in(text);
        int p = 0;
        return settings.ParseToDOM(in).IsOK() && settings.GetParameter("p", p).IsOK();
    });
}

TEST(Reuse, DataModelReaderHoldsOneDocument)
{
    std::string text = "<DataModel><Fields>";
    for (int i = 0; i < 40; ++i)
        text += "<Field name=\"f" + std::to_string(i) +
                "\" storage=\"string\" measure=\"nominal\"><Values><Value value=\"a\"/>"
                "<Value value=\"b\"/></Values></Field>";
    text += "</Fields></DataModel>";
    for (const bool fieldsInDOM : {true, false}) {
        ZRXPrsUtil::ZRDataModelParser parser;
        parser.SetFieldsInDOM(fieldsInDOM);
        ExpectHoldsOneDocument([&] {
            ZRVarList vars;
            return parser.ParseToDOM(text).IsOK() &&
                   parser.FillVarList(vars, false, false, 10).IsOK();
        });
    }
}

} // namespace
