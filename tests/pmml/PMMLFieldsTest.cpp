// ZRPMMLParser::FillVarList: field kinds, values, missing values, ranges and
// bins.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRVarList.h>

using pmmltest::Doc;
using pmmltest::Field;
using pmmltest::Join;
using pmmltest::Parser;
using pmmltest::Same;
using ZRMetadata::IZRVariable;
using ZRMetadata::ZRVarList;

namespace {

// Every field of tests/data/pmml/dictionary.pmml as a variable, in the line
// form that pmmltest::Describe writes and explains, and the bins that come
// with useBins. Bins stop the walk
// at the last field, which has no Discretize.
TEST(PMMLFields, DictionaryFileAsVariables)
{
    const std::pair<const char*, const char*> vars[] = {
        {"cat_str 3;x|y;;?=unknown|=;;", ""},
        {"cat_num 2;1|M|2;one|none|inf;6=n/a|9=bad|8=;lo..100;", ""},
        {"ordinal 2;1.5|2.5;;;;", ""},
        {"odd_optype 2;;;;;", ""},
        {"shown 3;\xC3\xA9;\xE2\x82\xAC;;;", ""},
        {"cont 1;;;-9=;-5..hi;", "0..3 1|2 low|mid|high"},
        {"cont_open 1;;;;;", "lo..hi 1 "},
        {"cont_one 1;;;;;", ""},
        {"cont_two 1;;;;;", "0..3 1|2 "},
        {"cont_empty 1;;;;;", ""},
        {"cont_str 1;;;;;", ""},
        {"cont_unbinned 1;;;;;", ""},
    };
    Parser parser;
    ASSERT_EQ(parser.ParseFile(pmmltest::kDictionary), 0);
    for (bool useBins : {false, true}) {
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, {}, useBins).GetCode(), useBins ? 110 : 0);
        ASSERT_EQ(list.Size(), std::size(vars) - (useBins ? 1 : 0));
        for (std::size_t i = 0; i < list.Size(); ++i) {
            const IZRVariable& var = *list.GetVarAt(static_cast<int>(i));
            EXPECT_EQ(pmmltest::Describe(var, *list.GetEncoderAt(static_cast<int>(i))),
                      vars[i].first + std::string(useBins ? vars[i].second : ""));
            EXPECT_EQ(var.GetRole(), IZRVariable::eRoleInput);
        }
        EXPECT_EQ(list.GetVarAt(4)->GetLabel(), "Shown & told");
        EXPECT_EQ(Join(list.GetEncoderAt(5)->GetCallOrder(), Same),
                  useBins ? "SetBinLabels|AddMissing|SetMissingRange"
                          : "AddMissing|SetMissingRange");
    }
    std::vector<double> cuts{7.0};
    std::vector<std::string> labels{"stale"};
    EXPECT_TRUE(parser.SetBinsFrTransDict("cont_empty", cuts, labels));
    EXPECT_EQ(cuts, std::vector<double>{0.0});
    EXPECT_TRUE(labels.empty());
    EXPECT_FALSE(parser.SetBinsFrTransDict("CONT", cuts, labels));
    EXPECT_TRUE(cuts.empty());
}

TEST(PMMLFields, FailuresStopTheWalk)
{
    const std::pair<std::string, long> cases[] = {
        {Field("a", "boolean", "categorical"), 109},
        {Field("a", "Double"), 109},
        {"<DataField name=\"a\" optype=\"continuous\"/>", 108},
        {"<DataField name=\"a\" dataType=\"double\"/>", 108},
        {Field("a", "integer", "categorical") + Field("a", "string", "categorical"), 111},
        {Field("x", "double"), 110}, // no TransformationDictionary
    };
    for (const auto& [fields, code] : cases) {
        ZRVarList list;
        Parser parser;
        ASSERT_EQ(parser.Parse(
                      Doc(Field("first", "string", "categorical") + fields + Field("z", "float"))),
                  0);
        EXPECT_EQ(parser.FillVarList(list, {}, true).GetCode(), code) << fields;
        EXPECT_EQ(list.Size(), code == 111 ? 2u : 1u) << fields;
    }
}

TEST(PMMLFields, WantedFieldsInDocumentOrder)
{
    const std::string dictionary = Field("b", "double") + "<Other name=\"a\"/>" +
                                   "<DataField name=\"skipped\"/>" + Field("a", "string") +
                                   "<DataField dataType=\"string\"/>" + Field("c", "string");
    Parser parser;
    ASSERT_EQ(parser.Parse(Doc(dictionary)), 0);
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, {"a", "b"}, false).GetCode(), 108); // nameless field
    ASSERT_EQ(list.Size(), 2u);
    EXPECT_EQ(list.GetVarAt(0)->GetName(), "b");
    EXPECT_EQ(list.GetVarAt(1)->GetName(), "a");
    ASSERT_EQ(parser.Parse(Doc("<Other/>")), 0);
    EXPECT_TRUE(parser.FillVarList(list, {}, true).IsOK());
    EXPECT_EQ(list.Size(), 2u);
}

// The wanted list is a set of exact names: its order and repeats don't
// matter, names the document lacks are passed over, case and non-ASCII
// text count, and a name ends at a zero byte as its C string does.
TEST(PMMLFields, WantedListIsASetOfExactNames)
{
    const std::string dictionary = Field("b", "double") + Field("\xC3\xA9t\xC3\xA9", "string") +
                                   Field("B", "string") + Field("a", "string") +
                                   Field("c", "string") + Field("\xC3\xA9", "string");
    Parser parser;
    ASSERT_EQ(parser.Parse(Doc(dictionary)), 0);
    const std::vector<std::string> wanted{
        "zz", "a", "\xC3\xA9t\xC3\xA9", "a", std::string("b\0c", 3), "missing", "\xC3\xA9t"};
    ZRVarList list;
    EXPECT_TRUE(parser.FillVarList(list, wanted, false).IsOK());
    std::vector<std::string> names;
    for (std::size_t i = 0; i < list.Size(); ++i)
        names.push_back(list.GetVarAt(static_cast<int>(i))->GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"b", "\xC3\xA9t\xC3\xA9", "a"}));
}

} // namespace
