// ZRPMMLParser::FillVarList: field kinds, values, missing values, ranges and
// bins.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRVarList.h>

using pmmltest::Doc;
using pmmltest::Field;
using pmmltest::Join;
using pmmltest::Num;
using pmmltest::Same;
using pmmltest::Parser;
using ZRMetadata::IZREncoder;
using ZRMetadata::IZRVariable;
using ZRMetadata::ZRVarList;

namespace {

// One variable of tests/data/pmml/dictionary.pmml as the list holds it.
struct Var {
    const char* name;
    int type;
    std::string values, labels, missing, range, bins;
};

TEST(PMMLFields, DictionaryFileAsVariables) {
    const Var vars[] = {
        {"cat_str", 3, "x|y", "", "?=unknown|=", "", ""},
        {"cat_num", 2, "1|M|2", "one|none|inf", "6=n/a|9=bad|8=", "lo..100", ""},
        {"ordinal", 2, "1.5|2.5", "", "", "", ""},
        {"odd_optype", 2, "", "", "", "", ""},
        {"shown", 3, "\xC3\xA9", "\xE2\x82\xAC", "", "", ""},
        {"cont", 1, "", "", "-9=", "-5..hi", "0..3 1|2 low|mid|high"},
        {"cont_open", 1, "", "", "", "", "lo..hi 1 "},
        {"cont_one", 1, "", "", "", "", ""},
        {"cont_two", 1, "", "", "", "", "0..3 1|2 "},
        {"cont_empty", 1, "", "", "", "", ""},
        {"cont_str", 1, "", "", "", "", ""},
    };
    Parser parser;
    ASSERT_EQ(parser.ParseFile(pmmltest::kDictionary), 0);
    for (bool useBins : {false, true}) {
        ZRVarList list;
        ASSERT_TRUE(parser.FillVarList(list, {}, useBins).IsOK());
        ASSERT_EQ(list.Size(), std::size(vars));
        for (std::size_t i = 0; i < list.Size(); ++i) {
            const Var& v = vars[i];
            const IZRVariable& var = *list.GetVarAt(static_cast<int>(i));
            const IZREncoder& enc = *list.GetEncoderAt(static_cast<int>(i));
            EXPECT_EQ(var.GetName(), v.name);
            EXPECT_EQ(var.GetVarType(), v.type) << v.name;
            EXPECT_EQ(var.GetRole(), IZRVariable::eRoleInput);
            EXPECT_EQ(v.type == 3 ? Join(enc.GetStringValues(), Same)
                                  : Join(enc.GetNumericValues(), Num), v.values) << v.name;
            EXPECT_EQ(Join(enc.GetValueLabels(), Same), v.labels) << v.name;
            EXPECT_EQ(Join(enc.GetNumericMissing(), [](auto& m) { return Num(m.first) + "=" + m.second; }) +
                          Join(enc.GetStringMissing(), [](auto& m) { return m.first + "=" + m.second; }),
                      v.missing) << v.name;
            EXPECT_EQ(enc.HasMissingRange() ? Num(enc.GetMissingRangeLower()) + ".." +
                                                  Num(enc.GetMissingRangeUpper()) : "",
                      v.range) << v.name;
            EXPECT_EQ(var.GetUseBins() ? Num(var.GetMinimum()) + ".." + Num(var.GetMaximum()) + " " +
                                             Join(var.GetCutPoints(), Num) + " " +
                                             Join(enc.GetBinLabels(), Same) : "",
                      useBins ? v.bins : "") << v.name;
        }
        EXPECT_EQ(list.GetVarAt(4)->GetLabel(), "Shown & told");
        EXPECT_EQ(Join(list.GetEncoderAt(5)->GetCallOrder(), Same),
                  useBins ? "SetBinLabels|AddMissing|SetMissingRange" : "AddMissing|SetMissingRange");
    }
    std::vector<double> cuts{7.0};
    std::vector<std::string> labels{"stale"};
    EXPECT_TRUE(parser.SetBinsFrTransDict("cont_empty", cuts, labels));
    EXPECT_EQ(cuts, std::vector<double>{0.0});
    EXPECT_TRUE(labels.empty());
    EXPECT_FALSE(parser.SetBinsFrTransDict("CONT", cuts, labels));
    EXPECT_TRUE(cuts.empty());
}

TEST(PMMLFields, FailuresStopTheWalk) {
    const std::pair<std::string, long> cases[] = {
        {Field("a", "boolean", "categorical"), 109},
        {Field("a", "Double"), 109},
        {"<DataField name=\"a\" optype=\"continuous\"/>", 108},
        {"<DataField name=\"a\" dataType=\"double\"/>", 108},
        {Field("a", "double") + Field("a", "string", "categorical"), 111},
    };
    for (const auto& [fields, code] : cases) {
        ZRVarList list;
        Parser parser;
        ASSERT_EQ(parser.Parse(Doc(Field("first", "string", "categorical") + fields + Field("z", "float"))), 0);
        EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), code) << fields;
        EXPECT_EQ(list.Size(), code == 111 ? 2u : 1u) << fields;
    }
}

TEST(PMMLFields, WantedFieldsInDocumentOrder) {
    const std::string dictionary = Field("b", "double") + "<Other name=\"a\"/>" +
                                   "<DataField name=\"skipped\"/>" + Field("a", "string") +
                                   "<DataField dataType=\"string\"/>" + Field("c", "string");
    Parser parser;
    ASSERT_EQ(parser.Parse(Doc(dictionary)), 0);
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, {"a", "b"}, false).GetCode(), 108);  // nameless field
    ASSERT_EQ(list.Size(), 2u);
    EXPECT_EQ(list.GetVarAt(0)->GetName(), "b");
    EXPECT_EQ(list.GetVarAt(1)->GetName(), "a");
    ASSERT_EQ(parser.Parse(Doc("<Other/>")), 0);
    EXPECT_TRUE(parser.FillVarList(list, {}, true).IsOK());
    EXPECT_EQ(list.Size(), 2u);
}

TEST(PMMLFields, BinsAskedForButAbsent) {
    const std::string fields = Field("c", "string", "categorical") + Field("x", "double");
    for (const std::string& rest :
         {std::string(), std::string("<TransformationDictionary><DerivedField>"
                                     "<Discretize field=\"X\"/></DerivedField></TransformationDictionary>")}) {
        Parser parser;
        ASSERT_EQ(parser.Parse(Doc(fields, rest)), 0);
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, {}, true).GetCode(), 110) << rest;
        EXPECT_EQ(list.Size(), 1u);
        ZRVarList unbinned;
        EXPECT_TRUE(parser.FillVarList(unbinned, {}, false).IsOK());
        EXPECT_EQ(unbinned.Size(), 2u);
    }
}

} // namespace
