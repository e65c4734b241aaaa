// ZRPMMLParser::FillVarList: field kinds, values, missing values, ranges and
// bins.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRVarList.h>

#include <fstream>
#include <limits>

using pmmltest::Doc;
using pmmltest::Field;
using pmmltest::Parser;
using ZRMetadata::IZREncoder;
using ZRMetadata::IZRVariable;
using ZRMetadata::ZRVarList;
using Strings = std::vector<std::string>;
using Doubles = std::vector<double>;

namespace {

const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();

// Parses `text` and fills `list`; the parse must succeed.
long Fill(const std::string& text, ZRVarList& list, const Strings& wanted = {},
          bool useBins = false) {
    Parser parser;
    EXPECT_EQ(parser.Parse(text), 0) << text;
    return parser.FillVarList(list, wanted, useBins).GetCode();
}

TEST(PMMLFields, KindFromDataTypeAndOptype) {
    struct Case {
        std::string field;
        long code;
        int varType;
    } cases[] = {
        {Field("a", "string", "categorical"), 0, IZRVariable::eCategoricalString},
        {Field("a", "double", "continuous"), 0, IZRVariable::eContinuous},
        {Field("a", "integer", "categorical"), 0, IZRVariable::eCategoricalNumeric},
        {Field("a", "dateDaysSince[1960]", "ordinal"), 0, IZRVariable::eCategoricalNumeric},
        {Field("a", "dateTimeSecondsSince[1980]", "continuous"), 0, IZRVariable::eContinuous},
        {Field("a", "float", "unknownWord"), 0, IZRVariable::eCategoricalNumeric},
        {Field("a", "string", "continuous", "<Value value=\"x\" property=\"missing\"/>"), 0,
         IZRVariable::eContinuous},
        {Field("a", "boolean", "categorical"), 109, 0},
        {Field("a", "Double", "continuous"), 109, 0},
        {"<DataField name=\"a\" optype=\"continuous\"/>", 108, 0},
        {"<DataField name=\"a\" dataType=\"double\"/>", 108, 0},
        {"<DataField dataType=\"double\" optype=\"continuous\"/>", 108, 0},
    };
    for (const Case& c : cases) {
        ZRVarList list;
        EXPECT_EQ(Fill(Doc(c.field), list), c.code) << c.field;
        ASSERT_EQ(list.Size(), c.code == 0 ? 1u : 0u) << c.field;
        if (c.code == 0) {
            const IZRVariable& var = *list.GetVarAt(0);
            EXPECT_EQ(var.GetVarType(), c.varType) << c.field;
            EXPECT_EQ(var.GetRole(), IZRVariable::eRoleInput);
            EXPECT_TRUE(list.GetEncoderAt(0)->GetCallOrder().empty()) << c.field;
        }
    }
}

TEST(PMMLFields, WalkOrderWantedFieldsAndStops) {
    const std::string dictionary =
        Field("b", "double", "continuous") + "<Other name=\"x\"/>" +
        "<DataField name=\"skipped\" optype=\"continuous\"/>" + Field("a", "string", "categorical") +
        Field("a", "string", "categorical") + "<DataField dataType=\"string\"/>" +
        Field("c", "string", "categorical");
    ZRVarList list;
    EXPECT_EQ(Fill(Doc(dictionary), list, {"a", "b"}), 111);
    ASSERT_EQ(list.Size(), 2u);
    EXPECT_EQ(list.GetVarAt(0)->GetName(), "b");
    EXPECT_EQ(list.GetVarAt(1)->GetName(), "a");

    ZRVarList wantedC;
    EXPECT_EQ(Fill(Doc(dictionary), wantedC, {"c"}), 108);  // nameless field before "c"
    EXPECT_EQ(wantedC.Size(), 0u);
    ZRVarList none;
    EXPECT_EQ(Fill(Doc("<Other/>"), none), 0);
    EXPECT_EQ(none.Size(), 0u);
}

TEST(PMMLFields, ValuesAndLabelsOfCategoricalFields) {
    ZRVarList list;
    ASSERT_EQ(Fill(Doc(Field("plain", "string", "categorical",
                             "<Value value=\"x\" displayValue=\"X\"/><Value value=\"y\"/>") +
                       Field("labelled", "integer", "categorical",
                             "<Value value=\"1\" displayValue=\"one\" property=\"valid\"/>"
                             "<Value/><Interval closure=\"openOpen\" leftMargin=\"0\"/>"
                             "<Value value=\"NaN\" displayValue=\"none\"/>") +
                       Field("shifted", "double", "categorical",
                             "<Value value=\"INF\" displayValue=\"inf\"/><Value value=\"2\"/>") +
                       Field("empty", "string", "categorical") +
                       "<DataField name=\"shown\" displayName=\"Shown &amp; told\" "
                       "dataType=\"string\" optype=\"categorical\"><Value value=\"\xC3\xA9\" "
                       "displayValue=\"\xE2\x82\xAC\"/></DataField>"),
                   list),
              0);
    ASSERT_EQ(list.Size(), 5u);
    const IZREncoder& plain = *list.GetEncoderAt(0);
    EXPECT_EQ(plain.GetStringValues(), (Strings{"x", "y"}));
    EXPECT_TRUE(plain.GetValueLabels().empty());
    const IZREncoder& labelled = *list.GetEncoderAt(1);
    EXPECT_EQ(labelled.GetNumericValues(), (Doubles{1.0, ZRMV::gMissingValue}));
    EXPECT_EQ(labelled.GetValueLabels(), (Strings{"one", "none"}));
    // "INF" adds no number but its label counts: the label slides onto 2.
    EXPECT_EQ(list.GetEncoderAt(2)->GetNumericValues(), Doubles{2.0});
    EXPECT_EQ(list.GetEncoderAt(2)->GetValueLabels(), Strings{"inf"});
    EXPECT_EQ(list.GetVarAt(3)->GetNValues(), 0);
    EXPECT_EQ(list.GetVarAt(4)->GetLabel(), "Shown & told");
    EXPECT_EQ(list.GetEncoderAt(4)->GetStringValues(), Strings{"\xC3\xA9"});
    EXPECT_EQ(list.GetEncoderAt(4)->GetValueLabels(), Strings{"\xE2\x82\xAC"});
}

TEST(PMMLFields, MissingValuesAndInvalidRange) {
    const std::string numericMissing =
        "<Value value=\"6\" displayValue=\"n/a\" property=\"invalid\"/>"
        "<Value value=\"x\" displayValue=\"bad\" property=\"missing\"/>"
        "<Value value=\"9\" property=\"missing\"/><Value value=\"8\" property=\"other\"/>";
    const std::string ranges =
        "<Extension name=\"invalidRangeUpper\" value=\"1\"/>"
        "<Extension name=\"invalidRangeUpper\" value=\"100\"/>"
        "<Extension name=\"invalidRangeLower\" value=\"oops\"/>"
        "<Extension name=\"other\" value=\"5\"/><Extension value=\"5\"/>";
    ZRVarList list;
    ASSERT_EQ(Fill(Doc(Field("cat", "integer", "categorical", numericMissing + ranges) +
                       Field("cont", "double", "continuous",
                             numericMissing + "<Extension name=\"invalidRangeLower\" value=\"-1\"/>") +
                       Field("str", "string", "categorical",
                             "<Value value=\"x\" property=\"missing\" displayValue=\"X\"/>" +
                                 ranges) +
                       Field("strcont", "string", "continuous",
                             "<Value value=\"x\" property=\"missing\"/>") +
                       Field("noRange", "double", "continuous",
                             "<Extension name=\"invalidRangeLower\" value=\"oops\"/>")),
                   list),
              0);
    ASSERT_EQ(list.Size(), 5u);
    const std::vector<std::pair<double, std::string>> expected{
        {6.0, "n/a"}, {9.0, "bad"}, {8.0, ""}};
    for (int i : {0, 1}) {
        const IZREncoder& encoder = *list.GetEncoderAt(i);
        EXPECT_EQ(encoder.GetNumericMissing(), expected);
        EXPECT_EQ(encoder.GetCallOrder(),
                  (Strings{"AddMissing", "AddMissing", "AddMissing", "SetMissingRange"}));
        EXPECT_TRUE(encoder.GetNumericValues().empty());
    }
    EXPECT_EQ(list.GetEncoderAt(0)->GetMissingRangeLower(), kLowest);
    EXPECT_EQ(list.GetEncoderAt(0)->GetMissingRangeUpper(), 100.0);
    EXPECT_EQ(list.GetEncoderAt(1)->GetMissingRangeLower(), -1.0);
    EXPECT_EQ(list.GetEncoderAt(1)->GetMissingRangeUpper(), kHighest);
    const IZREncoder& str = *list.GetEncoderAt(2);
    EXPECT_EQ(str.GetStringMissing(), (std::vector<std::pair<std::string, std::string>>{{"x", "X"}}));
    EXPECT_FALSE(str.HasMissingRange());
    EXPECT_TRUE(list.GetEncoderAt(3)->GetCallOrder().empty());
    EXPECT_TRUE(list.GetEncoderAt(4)->GetCallOrder().empty());
}

// A transformation dictionary with one DerivedField per Discretize given.
std::string Trans(const Strings& discretizes) {
    std::string text = "<TransformationDictionary>";
    for (const std::string& d : discretizes)
        text += "<DerivedField name=\"d\">" + d + "</DerivedField>";
    return text + "</TransformationDictionary>";
}

std::string Bin(const std::string& value, const std::string& intervals) {
    return "<DiscretizeBin binValue=\"" + value + "\">" + intervals + "</DiscretizeBin>";
}

std::string Interval(const std::string& margins) {
    return "<Interval closure=\"closedOpen\" " + margins + "/>";
}

TEST(PMMLFields, BinsFromTheTransformationDictionary) {
    const std::string three = Bin("low", Interval("leftMargin=\"0\" rightMargin=\"1\"")) +
                              Bin("mid", Interval("leftMargin=\"1\" rightMargin=\"2\"")) +
                              Bin("high", Interval("leftMargin=\"2\" rightMargin=\"3\""));
    const std::string trans = Trans({
        "<Apply/><Discretize field=\"x\">" + three + "</Discretize>",
        "<Discretize field=\"x\">" + Bin("other", Interval("rightMargin=\"9\"")) + "</Discretize>",
        "<Discretize field=\"open\">" + Bin("0", Interval("rightMargin=\"1\"")) +
            Bin("1", Interval("leftMargin=\"1\" rightMargin=\"INF\"")) + "</Discretize>",
        "<Discretize field=\"one\">" + Bin("only", Interval("leftMargin=\"0\" rightMargin=\"1\"")) +
            "</Discretize>",
        "<Discretize field=\"two\">" +
            Bin("a", Interval("leftMargin=\"0\" rightMargin=\"1\"") +
                         Interval("leftMargin=\"1\" rightMargin=\"2\"")) +
            Bin("b", Interval("leftMargin=\"2\" rightMargin=\"3\"")) + "</Discretize>",
        "<Discretize field=\"empty\"/>",
    });
    ZRVarList list;
    ASSERT_EQ(Fill(Doc(Field("c", "string", "categorical") +
                           Field("x", "double", "continuous",
                                 "<Value value=\"-9\" property=\"missing\"/>"
                                 "<Extension name=\"invalidRangeLower\" value=\"-5\"/>") +
                           Field("open", "double", "continuous") +
                           Field("one", "double", "continuous") +
                           Field("two", "double", "continuous") +
                           Field("empty", "double", "continuous"),
                       trans),
                   list, {}, true),
              0);
    ASSERT_EQ(list.Size(), 6u);
    const IZRVariable& x = *list.GetVarAt(1);
    EXPECT_TRUE(x.GetUseBins());
    EXPECT_EQ(x.GetMinimum(), 0.0);
    EXPECT_EQ(x.GetMaximum(), 3.0);
    EXPECT_EQ(x.GetCutPoints(), (Doubles{1.0, 2.0}));
    EXPECT_EQ(list.GetEncoderAt(1)->GetBinLabels(), (Strings{"low", "mid", "high"}));
    EXPECT_EQ(list.GetEncoderAt(1)->GetCallOrder(),
              (Strings{"SetBinLabels", "AddMissing", "SetMissingRange"}));
    const IZRVariable& open = *list.GetVarAt(2);
    EXPECT_EQ(open.GetMinimum(), kLowest);
    EXPECT_EQ(open.GetMaximum(), kHighest);
    EXPECT_EQ(open.GetCutPoints(), Doubles{1.0});
    EXPECT_TRUE(list.GetEncoderAt(2)->GetBinLabels().empty());  // first label "0"
    for (int unbinned : {3, 5}) {
        EXPECT_FALSE(list.GetVarAt(unbinned)->GetUseBins());
        EXPECT_TRUE(list.GetVarAt(unbinned)->GetCutPoints().empty());
    }
    EXPECT_EQ(list.GetVarAt(4)->GetCutPoints(), (Doubles{1.0, 2.0}));
    EXPECT_TRUE(list.GetEncoderAt(4)->GetBinLabels().empty());  // two labels, three bins

    Parser parser;
    ASSERT_EQ(parser.Parse(Doc("", trans)), 0);
    Doubles cuts{7.0};
    Strings labels{"stale"};
    EXPECT_TRUE(parser.SetBinsFrTransDict("empty", cuts, labels));
    EXPECT_EQ(cuts, Doubles{0.0});
    EXPECT_TRUE(labels.empty());
    EXPECT_FALSE(parser.SetBinsFrTransDict("X", cuts, labels));
    EXPECT_TRUE(cuts.empty());
}

TEST(PMMLFields, BinsAskedForButAbsent) {
    const std::string fields = Field("c", "string", "categorical") +
                               Field("x", "double", "continuous") +
                               Field("y", "double", "continuous");
    for (const std::string& rest :
         {std::string(), Trans({"<Discretize field=\"y\"/>", "<Discretize field=\"X\"/>"})}) {
        ZRVarList list;
        EXPECT_EQ(Fill(Doc(fields, rest), list, {}, true), 110) << rest;
        EXPECT_EQ(list.Size(), 1u);
        ZRVarList unbinned;
        EXPECT_EQ(Fill(Doc(fields, rest), unbinned, {}, false), 0);
        EXPECT_EQ(unbinned.Size(), 3u);
    }
}

TEST(PMMLFields, DictionaryFileFillsTheList) {
    std::ifstream file(ZRX_TEST_DATA_DIR "/pmml/dictionary.pmml", std::ios::binary);
    ASSERT_TRUE(file.good());
    Parser parser;
    ASSERT_TRUE(parser.ParseToDOM(file).IsOK());
    ZRVarList list;
    ASSERT_TRUE(parser.FillVarList(list, {}, true).IsOK());
    ASSERT_EQ(list.Size(), 4u);
    EXPECT_EQ(list.FindVar("income"), 1);
    EXPECT_EQ(list.GetVarAt(1)->GetCutPoints(), (Doubles{10000.0, 50000.0}));
    EXPECT_EQ(list.GetEncoderAt(1)->GetBinLabels(), (Strings{"low", "middle", "high"}));
    EXPECT_EQ(list.GetEncoderAt(2)->GetStringMissing().size(), 2u);
    EXPECT_EQ(list.GetVarAt(3)->GetVarType(), IZRVariable::eCategoricalNumeric);
}

} // namespace
