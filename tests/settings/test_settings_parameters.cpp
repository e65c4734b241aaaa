// Scalar parameters in their four forms, declared types, names and groups.
#include "SettingsTestUtil.h"

#include <zrcommonr/ZRMV.h>

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;

namespace {

// The Parameter "text:X" of parameters.xml holds the value X. Codes are 0 for
// OK; the values are what `out` holds afterwards, starting from 42, 42.5 and
// true.
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
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "parameters.xml").IsOK());
    for (const auto& c : cases) {
        const std::string name = std::string("text:") + c.text;
        std::string text = "old";
        EXPECT_TRUE(parser.GetParameter(name.c_str(), text).IsOK());
        EXPECT_EQ(text, c.text);
        int number = 42;
        EXPECT_EQ(Code(parser.GetParameter(name.c_str(), number)), c.intCode) << c.text;
        EXPECT_EQ(number, c.intValue) << c.text;
        double real = 42.5;
        EXPECT_EQ(Code(parser.GetParameter(name.c_str(), real)), c.doubleCode) << c.text;
        EXPECT_EQ(real, c.doubleValue) << c.text;
        bool flag = true;
        EXPECT_EQ(Code(parser.GetParameter(name.c_str(), flag)), c.boolCode) << c.text;
        EXPECT_EQ(flag, c.boolValue) << c.text;
    }
}

// Which element a name finds: the first of its name and kind, compared
// exactly; a null or broken name finds none.
TEST(SettingsParameters, NamesAndDeclaredTypes)
{
    ZRSettingsParser parser;
    EXPECT_EQ(parser.GetParameterType("type:s"), ZRSettingsParser::ParamTypeInvalid);
    ASSERT_TRUE(ParseFile(parser, "parameters.xml").IsOK());
    const std::pair<const char*, ZRSettingsParser::ParamType> types[] = {
        {"type:s", ZRSettingsParser::ParamTypeString},  {"type:d", ZRSettingsParser::ParamTypeDouble},
        {"type:i", ZRSettingsParser::ParamTypeInteger}, {"type:b", ZRSettingsParser::ParamTypeBoolean},
        {"type:e", ZRSettingsParser::ParamTypeEnum},    {"type:f", ZRSettingsParser::ParamTypeFieldName},
        {"type:S", ZRSettingsParser::ParamTypeInvalid}, {"Case", ZRSettingsParser::ParamTypeInvalid},
        {"type:g", ZRSettingsParser::ParamTypeInvalid}, {"type:x", ZRSettingsParser::ParamTypeInvalid},
        {nullptr, ZRSettingsParser::ParamTypeInvalid},
    };
    for (const auto& [name, type] : types)
        EXPECT_EQ(parser.GetParameterType(name), type) << (name ? name : "null");

    const struct {
        const char* name;
        long code;
        const char* text;
    } lookups[] = {
        {"", 0, "empty name"}, {"Case", 0, "5"},        {"case", 120, "old"},
        {"twice", 123, "old"}, {nullptr, 120, "old"}, {"\xff\xfe", 120, "old"},
    };
    for (const auto& c : lookups) {
        std::string text = "old";
        EXPECT_EQ(Code(parser.GetParameter(c.name, text)), c.code) << (c.name ? c.name : "null");
        EXPECT_EQ(text, c.text);
    }
    EXPECT_NE(parser.GetComplexParameter(""), nullptr);
    EXPECT_EQ(parser.GetComplexParameter(nullptr), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("\xc3"), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("Case"), nullptr);
}

} // namespace
