// Variable roles: the two readers of a list of names, the single form, and
// the reach of the role queries.
#include "SettingsTestUtil.h"

#include <gtest/gtest.h>

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;
using Names = std::vector<std::string>;

namespace {

TEST(SettingsRoles, ExampleDocument)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseExample(parser).IsOK());
    using Query = ZRCommon::ZRStatus (ZRSettingsParser::*)(Names&) const;
    const std::pair<Query, Names> cases[] = {
        {&ZRSettingsParser::GetTargetVars, {"default_flag"}},
        {&ZRSettingsParser::GetCatResponseVars, {"default_flag"}},
        {&ZRSettingsParser::GetContResponseVars, {"loss_amount"}},
        {&ZRSettingsParser::GetCatPredictors,
         {"gender", "region", "education", "employment", "home_owner", "product"}},
    };
    for (const auto& [query, expected] : cases) {
        Names names;
        EXPECT_TRUE((parser.*query)(names).IsOK());
        EXPECT_EQ(names, expected);
    }
    Names names;
    EXPECT_TRUE(parser.GetPredictors(names).IsOK());
    EXPECT_EQ(names.size(), 12u);
    std::string weight;
    EXPECT_TRUE(parser.GetFrequencyWeight(weight).IsOK());
    EXPECT_EQ(weight, "case_weight");
}

// The same Parameter read by GetPredictors ("inputs", the array reading) and
// by GetCatPredictors ("CatPredictors", the isList reading).
TEST(SettingsRoles, ArrayReadingAgainstIsListReading)
{
    const struct {
        const char* attributes;
        const char* children;
        long arrayCode;
        Names arrayNames;
        long listCode;
        Names listNames;
    } cases[] = {
        {"", "<ListValue><Value value=\"a\"/></ListValue>", 0, {"a"}, 108, {}},
        {"value=\"v\"", "<ListValue><Value value=\"a\"/></ListValue>", 0, {"a"}, 0, {"v"}},
        {"isList=\"true\" value=\"v\"", "", 0, {"v"}, 122, {}},
        {"isList=\"true\"", "", 123, {}, 122, {}},
        {"", "", 123, {}, 108, {}},
        {"isList=\"true\"", "<ListValue/>", 123, {}, 0, {}},
        {"isList=\"true\"",
         "<ListValue><Value value=\"a\"/><Value/><Value value=\"b\"/></ListValue>", 123, {"a"},
         108, {"a"}},
        {"isList=\"true\"",
         "<ListValue><Value value=\"a\"/><!-- c --><Value value=\"\"/> <Value value=\"b c\"/>"
         "</ListValue>", 0, {"a", "b c"}, 0, {"a", "b c"}},
        {"value=\"\"", "", 0, {}, 0, {}},
        {"isList=\"false\"", "<ListValue><Value value=\"a\"/></ListValue>", 0, {"a"}, 108, {}},
    };
    for (const auto& c : cases) {
        const std::string rest = std::string(c.attributes) + ">" + c.children + "</Parameter>";
        ZRSettingsParser parser;
        ASSERT_TRUE(Parse(parser, Params("<Parameter name=\"inputs\" " + rest +
                                         "<Parameter name=\"CatPredictors\" " + rest))
                        .IsOK());
        Names names{"old"};
        const ZRCommon::ZRStatus array = parser.GetPredictors(names);
        EXPECT_EQ(array.GetCode(), c.arrayCode) << rest;
        EXPECT_EQ(array.GetFlag(), c.arrayCode == 123) << rest;
        EXPECT_EQ(names, c.arrayNames) << rest;
        names = {"old"};
        const ZRCommon::ZRStatus list = parser.GetCatPredictors(names);
        EXPECT_EQ(list.GetCode(), c.listCode) << rest;
        EXPECT_FALSE(list.GetFlag()) << rest;
        EXPECT_EQ(names, c.listNames) << rest;
    }
}

TEST(SettingsRoles, SingleForm)
{
    const struct {
        const char* parameter;
        long code;
        const char* weight;
    } cases[] = {
        {"<Parameter name=\"FrequencyWeightVar\" value=\"w\" isList=\"true\"/>", 0, "w"},
        {"<Parameter name=\"FrequencyWeightVar\" value=\"\"/>", 0, ""},
        {"<Parameter name=\"FrequencyWeightVar\" isList=\"true\"><ListValue/></Parameter>", 121,
         "old"},
        {"<Parameter name=\"FrequencyWeightVar\"/>", 108, "old"},
        {"<Parameter value=\"nameless\"/><Parameter name=\"FrequencyWeightVar\" value=\"w\"/>", 0,
         "w"},
        // The first of one name counts, even when it fails.
        {"<Parameter name=\"FrequencyWeightVar\"/><Parameter name=\"FrequencyWeightVar\" "
         "value=\"w\"/>", 108, "old"},
        {"<Parameter name=\"frequencyWeightVar\" value=\"w\"/>", 120, "old"},
    };
    for (const auto& c : cases) {
        ZRSettingsParser parser;
        ASSERT_TRUE(Parse(parser, Params(c.parameter)).IsOK());
        std::string weight = "old";
        EXPECT_EQ(parser.GetFrequencyWeight(weight).GetCode(), c.code) << c.parameter;
        EXPECT_EQ(weight, c.weight) << c.parameter;
    }
}

TEST(SettingsRoles, OnlyDirectChildrenOfParametersAndFlagOnlyFor120)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(Parse(parser, Params("<ComplexParameter name=\"g\"><Parameter name=\"target\" "
                                     "value=\"t\"/><Parameter name=\"ContResponses\" "
                                     "value=\"r\"/></ComplexParameter>"))
                    .IsOK());
    Names names{"old"};
    const ZRCommon::ZRStatus target = parser.GetTargetVars(names);
    EXPECT_EQ(target.GetCode(), 120);
    EXPECT_TRUE(target.GetFlag());
    const ZRCommon::ZRStatus responses = parser.GetContResponseVars(names);
    EXPECT_EQ(responses.GetCode(), 120);
    EXPECT_TRUE(responses.GetFlag());
    EXPECT_EQ(parser.GetVariables("ContResponses", names[0]).GetCode(), 120);
    EXPECT_EQ(parser.GetVariables(nullptr, names).GetCode(), 120);
    EXPECT_EQ(names, Names{"old"});
}

} // namespace
