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
    // text; int code, value; double code, value; bool code, value
    const std::tuple<std::string, long, int, long, double, long, bool> cases[] = {
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
    for (const auto& [text, intCode, intValue, doubleCode, doubleValue, boolCode, boolValue] :
         cases) {
        const std::string name = "text:" + text;
        auto get = [&](auto& out) { return parser.GetParameter(name.c_str(), out); };
        ExpectRead(get, std::string("old"), 0, text, text);
        ExpectRead(get, 42, intCode, intValue, text);
        ExpectRead(get, 42.5, doubleCode, doubleValue, text);
        ExpectRead(get, true, boolCode, boolValue, text);
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
        {"type:s", ZRSettingsParser::ParamTypeString},
        {"type:d", ZRSettingsParser::ParamTypeDouble},
        {"type:i", ZRSettingsParser::ParamTypeInteger},
        {"type:b", ZRSettingsParser::ParamTypeBoolean},
        {"type:e", ZRSettingsParser::ParamTypeEnum},
        {"type:f", ZRSettingsParser::ParamTypeFieldName},
        {"type:S", ZRSettingsParser::ParamTypeInvalid},
        {"Case", ZRSettingsParser::ParamTypeInvalid},
        {"type:g", ZRSettingsParser::ParamTypeInvalid},
        {"type:x", ZRSettingsParser::ParamTypeInvalid},
        {nullptr, ZRSettingsParser::ParamTypeInvalid},
    };
    for (const auto& [name, type] : types)
        EXPECT_EQ(parser.GetParameterType(name), type) << (name ? name : "null");

    // name, code, value read
    const std::tuple<const char*, long, std::string> lookups[] = {
        {"", 0, "empty name"}, {"Case", 0, "5"},      {"case", 120, "old"},
        {"twice", 123, "old"}, {nullptr, 120, "old"}, {"\xff\xfe", 120, "old"},
    };
    for (const auto& [name, code, text] : lookups) {
        ExpectRead([&, n = name](std::string& out) { return parser.GetParameter(n, out); },
                   std::string("old"), code, text, name ? name : "null");
    }
    EXPECT_NE(parser.GetComplexParameter(""), nullptr);
    EXPECT_EQ(parser.GetComplexParameter(nullptr), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("\xc3"), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("Case"), nullptr);
}

} // namespace
