// Settings documents: the Parameters path and the statuses a parse leaves for
// every later call; DataField and DerivedField elements as variables; the
// example job read as the example program reads it.
#include "../pmml/PMMLTestSupport.h"
#include "SettingsTestUtil.h"

using Ints = std::vector<int>;
using Names = std::vector<std::string>;
using Strings = std::vector<std::string>;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;
using ZRXPrsUtil::ZRSettingsParser;
using namespace settingstest;
using pmmltest::Describe;
using pmmltest::Join;
using pmmltest::Line;
using pmmltest::Same;

namespace {

// The Parameters path of a settings document and the statuses that a parse
// leaves for every later call.
TEST(SettingsDocument, ParametersPathDecidesTheParse)
{
    const std::string task = "<MiningBuildTask><Extension><Parameters><Parameter name=\"p\" "
                             "value=\"1\"/></Parameters></Extension></MiningBuildTask>";
    const std::pair<std::string, long> cases[] = {
        {"<PMML><DataDictionary/><!-- c --><Header/>" + task + "</PMML>", 0},
        {"<PMML><DataDictionary/></PMML>", 119},
        {"<PMML><DataDictionary/><MiningBuildTask/></PMML>", 119},
        {"<PMML><DataDictionary/><MiningBuildTask><Parameters/></MiningBuildTask></PMML>", 119},
        // Only the first Extension of the task is looked at.
        {"<PMML><DataDictionary/><MiningBuildTask><Extension/><Extension><Parameters/>"
         "</Extension></MiningBuildTask></PMML>",
         119},
        {"<PMML><DataDictionary/><MiningBuildTask><Extension><x:Parameters xmlns:x=\"u\"/>"
         "</Extension></MiningBuildTask></PMML>",
         119},
        {"<PMML>" + task + "</PMML>", 106},
        {"<Settings><DataDictionary/>" + task + "</Settings>", 105},
        {"<PMML><DataDictionary/>" + task, 104},
        {"", 104},
    };
    for (const auto& [text, code] : cases) {
        ZRSettingsParser parser;
        const ZRCommon::ZRStatus result = Parse(parser, text);
        EXPECT_EQ(result.GetCode(), code) << text;
        EXPECT_FALSE(result.GetFlag()) << text;
        EXPECT_EQ(parser.GetStatus(), result) << text;
        // Not required, a missing path is no failure, and the settings
        // queries answer 119 for it.
        ZRSettingsParser lenient;
        lenient.SetParametersRequired(false);
        EXPECT_EQ(Parse(lenient, text).GetCode(), code == 119 ? 0 : code) << text;
        EXPECT_EQ(lenient.GetParametersElement() != nullptr, code == 0) << text;
        int value = 0;
        EXPECT_EQ(lenient.GetParameter("p", value).GetCode(), code == 119 ? 119 : code) << text;
    }
}

// Every call answers with the parse's code and leaves the caller's data alone:
// 107 before any parse, 119 without Parameters, 106 after a failed parse that
// follows a good one (nothing of the good one may answer).
TEST(SettingsDocument, QueriesAnswerWithTheParseCode)
{
    const std::string field = "<DataField name=\"a\" dataType=\"double\" optype=\"continuous\"/>";
    for (const long code : {107L, 119L, 106L}) {
        ZRSettingsParser parser;
        if (code != 107) {
            ASSERT_TRUE(Parse(parser, Doc(field, "<Parameter name=\"p\" value=\"1\"/>"
                                                 "<ComplexParameter name=\"p\"/>"))
                            .IsOK());
            ASSERT_EQ(Parse(parser, code == 106 ? "<PMML/>"
                                                : "<PMML><DataDictionary>" + field +
                                                      "</DataDictionary></PMML>")
                          .GetCode(),
                      code);
        }
        ZRMTD_NAMESPACE::ZRVarList list;
        int number = 7;
        std::vector<double> numbers{1.0};
        std::vector<std::vector<int>> matrix{{1}};
        std::string weight = "kept";
        EXPECT_EQ(parser.FillVarList(list, false).GetCode(), code);
        EXPECT_EQ(parser.FillTransDict(list).GetCode(), code);
        EXPECT_EQ(parser.GetParameter("p", number).GetCode(), code);
        EXPECT_EQ(parser.GetArray("p", numbers).GetCode(), code);
        EXPECT_EQ(parser.GetMatrix("p", matrix).GetCode(), code);
        EXPECT_EQ(parser.GetFrequencyWeight(weight).GetCode(), code);
        EXPECT_EQ(parser.GetParameterType("p"), ZRSettingsParser::ParamTypeInvalid);
        EXPECT_EQ(parser.GetComplexParameter("p"), nullptr);
        EXPECT_TRUE(list.Size() == 0 && number == 7 && numbers.size() == 1 && matrix.size() == 1 &&
                    weight == "kept");
        // The next good parse serves queries again.
        ASSERT_TRUE(Parse(parser, Doc("", "<Parameter name=\"p\" value=\"2\"/>")).IsOK());
        EXPECT_TRUE(parser.GetParameter("p", number).IsOK());
        EXPECT_EQ(number, 2);
    }
}

// DataField and DerivedField elements as variables: kinds, storage codes,
// margins, missing values, ranges and bins.
// Every field of fields.xml as a variable, by FillVarList and FillTransDict.
// codes: one label for two values is dropped; words: the empty value.
TEST(SettingsFields, FieldsOfAFile)
{
    const std::vector<std::string> fields = {"binned 1;;;-9=;-99..hi; 2 -1..10",
                                             "numbered_bins 1;;;;; 2 lo..hi",
                                             "one_bin 1;;;;; 2 -1..10",
                                             "codes 2;1|2;;9=bad|8=;90..hi; 1",
                                             "words 3;;empty;;; 3",
                                             "plain 1;;;;; 2 lo..hi",
                                             "right_only 1;;;;; 2 lo..-5",
                                             "one_point 1;;;;; 1 3..3",
                                             "last_interval 1;;;;; 4 lo..7",
                                             "text_cont 1;;;;; 3 lo..hi",
                                             "odd_optype 2;;;;; 5",
                                             "stamp 1;;;;; 6 lo..hi"};
    const std::vector<std::string> derived = {
        "binned_bins 3;;;;; 3",         "numbered_bins_bins 3;;;;; 3",
        "one_bin_bins 3;;;;; 3",        "derived_plain 1;;;;; 2 lo..hi",
        "in_extension 1;;;;; 2 1..2",   "extension_last 1;;;;; 2 lo..7",
        "interval_last 1;;;;; 2 2..hi", "first_in_extension 1;;;;; 2 1..5",
        "derived_text 3;;;;; 3",        "self_binned 1;;;;; 2 lo..hi"};
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "fields.xml").IsOK());
    for (const bool transDict : {false, true}) {
        ZRVarList list;
        ASSERT_TRUE(
            (transDict ? parser.FillTransDict(list) : parser.FillVarList(list, false)).IsOK());
        std::vector<std::string> lines;
        for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
            lines.push_back(Line(list, i));
            EXPECT_EQ(list.GetVarAt(i)->GetRole(), IZRVariable::eRoleInput);
        }
        EXPECT_EQ(lines, transDict ? derived : fields);
        EXPECT_EQ(list.GetEncoderAt(4)->GetStringValues(), transDict ? Strings{} : Strings{""});
    }
}

// Bins come from the Discretize of the field; bin numbers as labels are not
// passed on; one bin leaves the field's own margins; a continuous field
// without Discretize stops the walk with 110 (without a TransformationDictionary
// too: FieldsOutOfDOM.FaultsReadAsInTheWholeDocument).
TEST(SettingsFields, BinsFromTheTransformationDictionary)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "fields.xml").IsOK());
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, true).GetCode(), 110);
    ASSERT_EQ(list.Size(), 5u);
    EXPECT_EQ(Line(list, 0) + "|" + Line(list, 1) + "|" + Line(list, 2),
              "binned 1;;;-9=;-99..hi;0..3 1|2 lo|mid|hi 2|numbered_bins 1;;;;;0..3 1|2  2|"
              "one_bin 1;;;;; 2 -1..10");
    EXPECT_EQ(Join(list.GetEncoderAt(0)->GetCallOrder(), Same),
              "SetBinLabels|AddMissing|SetMissingRange");
}

// The example job's settings document, read as the example program reads it
// (its fields: FieldsOutOfDOM.DocumentsReadAsWhole). Groups open only from
// their own scope, and a scope sees only its direct children.
TEST(SettingsExample, ParametersInNestedGroups)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "example").IsOK());
    Names names;
    EXPECT_TRUE(parser.GetCatPredictors(names).IsOK());
    EXPECT_EQ(names,
              (Names{"gender", "region", "education", "employment", "home_owner", "product"}));
    std::vector<double> levels;
    ASSERT_TRUE(parser.GetArray("profitLevels", levels).IsOK());
    EXPECT_EQ(levels, (std::vector<double>{0.1, 0.25, 0.5, 0.75, 0.9}));
    std::vector<Ints> costs;
    ASSERT_TRUE(parser.GetMatrix("misclassificationCosts", costs).IsOK());
    EXPECT_EQ(costs, (std::vector<Ints>{{0, 1}, {5, 0}}));

    void* validation = parser.GetComplexParameter("validation");
    ASSERT_NE(validation, nullptr);
    void* holdout = parser.GetComplexParameter("holdout", validation);
    ASSERT_NE(holdout, nullptr);
    EXPECT_EQ(parser.GetComplexParameter("holdout"), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("folds", validation), nullptr); // a Parameter
    double share = 0.0;
    EXPECT_TRUE(parser.GetParameter("sampleShare", share, holdout).IsOK());
    EXPECT_EQ(share, 0.3);
    EXPECT_EQ(Code(parser.GetParameter("sampleShare", share, validation)), 120);
    EXPECT_EQ(Code(parser.GetParameter("sampleShare", share)), 120);
    int folds = 0;
    EXPECT_TRUE(parser.GetParameter("folds", folds, validation).IsOK());
    EXPECT_EQ(folds, 10);
    EXPECT_EQ(parser.GetParameterType("keepFields", holdout), ZRSettingsParser::ParamTypeFieldName);
    Names keep;
    EXPECT_TRUE(parser.GetArray("keepFields", keep, holdout).IsOK());
    EXPECT_EQ(keep, (Names{"customer_id", "default_flag"}));

    std::vector<Ints> gains;
    EXPECT_EQ(Code(parser.GetMatrix("gainsBins", gains)), 120);
    ASSERT_TRUE(parser.GetMatrix("gainsBins", gains, parser.GetComplexParameter("output")).IsOK());
    EXPECT_EQ(gains, (std::vector<Ints>{{10, 20, 30}, {50, 100}}));
}

} // namespace
