// Scalar parameters in their four forms, declared types, and groups.
#include "SettingsTestUtil.h"

#include <zrcommonr/ZRMV.h>

#include <gtest/gtest.h>

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;

namespace {

// One `value` text read by all four forms. Codes are 0 for OK; the values
// are what `out` holds afterwards, starting from 42, 42.5 and true.
TEST(SettingsParameters, EachFormAcceptsAndRefuses)
{
    const struct {
        const char* text;
        long intCode;
        int intValue;
        long doubleCode;
        double doubleValue;
        long boolCode;
        bool boolValue;
    } cases[] = {
        {"0", 0, 0, 0, 0.0, 109, true},
        {"17", 0, 17, 0, 17.0, 109, true},
        {"-1", 109, -1, 0, -1.0, 109, true},
        {"1.5", 109, 42, 0, 1.5, 109, true},
        {"NaN", 109, 42, 0, ZRMV::gMissingValue, 109, true},
        {"INF", 109, 42, 109, 42.5, 109, true},
        {"-INF", 109, 42, 109, 42.5, 109, true},
        {"99999999999999999999", 109, 42, 0, 1e20, 109, true},
        {"", 109, 42, 109, 42.5, 109, true},
        {"false", 109, 42, 109, 42.5, 0, false},
        {"true", 109, 42, 109, 42.5, 0, true},
        {"TRUE", 109, 42, 109, 42.5, 109, true},
        {"1", 0, 1, 0, 1.0, 109, true},
    };
    for (const auto& c : cases) {
        ZRSettingsParser parser;
        ASSERT_TRUE(Parse(parser, Params(std::string("<Parameter name=\"p\" type=\"string\" "
                                                     "value=\"") + c.text + "\"/>"))
                        .IsOK());
        std::string text = "old";
        EXPECT_TRUE(parser.GetParameter("p", text).IsOK());
        EXPECT_EQ(text, c.text);
        int number = 42;
        EXPECT_EQ(parser.GetParameter("p", number).GetCode(), c.intCode) << c.text;
        EXPECT_EQ(number, c.intValue) << c.text;
        double real = 42.5;
        EXPECT_EQ(parser.GetParameter("p", real).GetCode(), c.doubleCode) << c.text;
        EXPECT_EQ(real, c.doubleValue) << c.text;
        bool flag = true;
        EXPECT_EQ(parser.GetParameter("p", flag).GetCode(), c.boolCode) << c.text;
        EXPECT_EQ(flag, c.boolValue) << c.text;
    }
}

TEST(SettingsParameters, ParametersWithoutAValue)
{
    const struct {
        const char* parameters;
        long code;
        bool flag;
    } cases[] = {
        {"<Parameter name=\"p\"><ListValue><Value value=\"1\"/></ListValue></Parameter>", 121,
         false},
        {"<Parameter name=\"p\"><ListValue/></Parameter>", 121, false},
        {"<Parameter name=\"p\" isList=\"true\"/>", 123, true},
        {"<Parameter name=\"p\"/><Parameter name=\"p\" value=\"5\"/>", 123, true},
        {"<Parameter name=\"p\" value=\"5\"><ListValue/></Parameter>", 0, false},
        {"<Parameter name=\"P\" value=\"5\"/><MatrixParmeter name=\"p\"/>", 120, true},
    };
    for (const auto& c : cases) {
        ZRSettingsParser parser;
        ASSERT_TRUE(Parse(parser, Params(c.parameters)).IsOK());
        int value = -7;
        const ZRCommon::ZRStatus result = parser.GetParameter("p", value);
        EXPECT_EQ(result.GetCode(), c.code) << c.parameters;
        EXPECT_EQ(result.GetFlag(), c.flag) << c.parameters;
        EXPECT_EQ(value, c.code == 0 ? 5 : -7) << c.parameters;
    }
}

TEST(SettingsParameters, DeclaredTypes)
{
    ZRSettingsParser parser;
    EXPECT_EQ(parser.GetParameterType("p"), ZRSettingsParser::ParamTypeInvalid);
    ASSERT_TRUE(
        Parse(parser,
              Params("<Parameter name=\"s\" type=\"string\"/><Parameter name=\"d\" "
                     "type=\"double\"/><Parameter name=\"i\" type=\"integer\"/><Parameter "
                     "name=\"b\" type=\"boolean\"/><Parameter name=\"e\" type=\"enum\"/>"
                     "<Parameter name=\"f\" type=\"fieldName\"/><Parameter name=\"S\" "
                     "type=\"String\"/><Parameter name=\"n\" value=\"3\"/>"
                     "<ComplexParameter name=\"g\" type=\"string\"/>"))
            .IsOK());
    const std::pair<const char*, ZRSettingsParser::ParamType> cases[] = {
        {"s", ZRSettingsParser::ParamTypeString},   {"d", ZRSettingsParser::ParamTypeDouble},
        {"i", ZRSettingsParser::ParamTypeInteger},  {"b", ZRSettingsParser::ParamTypeBoolean},
        {"e", ZRSettingsParser::ParamTypeEnum},     {"f", ZRSettingsParser::ParamTypeFieldName},
        {"S", ZRSettingsParser::ParamTypeInvalid},  {"n", ZRSettingsParser::ParamTypeInvalid},
        {"g", ZRSettingsParser::ParamTypeInvalid},  {"x", ZRSettingsParser::ParamTypeInvalid},
    };
    for (const auto& [name, type] : cases)
        EXPECT_EQ(parser.GetParameterType(name), type) << name;
    // A Parameter without a type still reads in every form.
    std::string text;
    EXPECT_TRUE(parser.GetParameter("n", text).IsOK());
    EXPECT_EQ(text, "3");
}

TEST(SettingsParameters, NestedGroups)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseExample(parser).IsOK());
    void* validation = parser.GetComplexParameter("validation");
    ASSERT_NE(validation, nullptr);
    void* holdout = parser.GetComplexParameter("holdout", validation);
    ASSERT_NE(holdout, nullptr);
    EXPECT_EQ(parser.GetComplexParameter("holdout"), nullptr);  // not a direct child
    EXPECT_EQ(parser.GetComplexParameter("folds", validation), nullptr);  // a Parameter

    double share = 0.0;
    EXPECT_TRUE(parser.GetParameter("sampleShare", share, holdout).IsOK());
    EXPECT_EQ(share, 0.3);
    EXPECT_EQ(parser.GetParameter("sampleShare", share, validation).GetCode(), 120);
    EXPECT_EQ(parser.GetParameter("sampleShare", share).GetCode(), 120);
    int folds = 0;
    EXPECT_TRUE(parser.GetParameter("folds", folds, validation).IsOK());
    EXPECT_EQ(folds, 10);
    EXPECT_EQ(parser.GetParameterType("keepFields", holdout), ZRSettingsParser::ParamTypeFieldName);
    std::string one;
    EXPECT_EQ(parser.GetParameter("keepFields", one, holdout).GetCode(), 121);
    std::vector<std::string> keep;
    EXPECT_TRUE(parser.GetArray("keepFields", keep, holdout).IsOK());
    EXPECT_EQ(keep, (std::vector<std::string>{"customer_id", "default_flag"}));
}

TEST(SettingsParameters, NamesThatNameNothing)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(Parse(parser, Params("<Parameter name=\"\" value=\"empty\"/>"
                                     "<ComplexParameter name=\"\"/>"))
                    .IsOK());
    std::string text = "old";
    EXPECT_TRUE(parser.GetParameter("", text).IsOK());
    EXPECT_EQ(text, "empty");
    text = "old";
    EXPECT_EQ(parser.GetParameter(nullptr, text).GetCode(), 120);
    EXPECT_EQ(parser.GetParameter("\xff\xfe", text).GetCode(), 120);  // not UTF-8
    EXPECT_EQ(parser.GetComplexParameter(nullptr), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("\xc3"), nullptr);
    EXPECT_EQ(parser.GetParameterType(nullptr), ZRSettingsParser::ParamTypeInvalid);
    EXPECT_EQ(text, "old");
}

} // namespace
