// The Parameters path of a settings document and the statuses that a parse
// leaves for every later call.
#include "SettingsTestUtil.h"

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;

namespace {

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

} // namespace
