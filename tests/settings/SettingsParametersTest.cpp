// The Parameters of a settings document: scalars in their four forms, declared
// types and names, arrays against matrices, groups, and variable roles.
#include "SettingsTestUtil.h"

#include <zrcommonr/ZRMV.h>

using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using Names = std::vector<std::string>;
using Strings = std::vector<std::string>;
using ZRXPrsUtil::ZRSettingsParser;
using namespace settingstest;

namespace {

// Scalar parameters in their four forms, declared types, names and groups.
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

// Arrays of a Parameter against matrices of a "MatrixParmeter": the same
// faults, strict in the one and lenient in the other.
// A Parameter of parameters.xml read as one value and by the three array
// forms; failures keep the items read before them.
TEST(SettingsArrays, OneValueAgainstThreeArrayForms)
{
    const double mv = ZRMV::gMissingValue;
    // name; code of one value; string, int and double array: code, items
    const std::tuple<const char*, long, long, Strings, long, Ints, long, Doubles> cases[] = {
        {"marked_with_value", 0, 0, {"7"}, 0, {7}, 0, {7}},
        {"empty_value", 0, 0, {}, 109, {}, 109, {}},
        {"spaced_value", 0, 0, {"1 2"}, 109, {}, 109, {}},
        {"no_value", 123, 123, {}, 123, {}, 123, {}},
        {"marked_no_value", 123, 123, {}, 123, {}, 123, {}},
        {"value_and_empty_list", 0, 123, {}, 123, {}, 123, {}},
        {"value_and_list", 0, 0, {"8"}, 0, {8}, 0, {8}},
        {"list_only", 121, 0, {"1"}, 0, {1}, 0, {1}},
        {"signed_list", 121, 0, {"1", "-2", "3"}, 109, {1}, 0, {1, -2, 3}},
        {"list_with_noise", 121, 0, {"1", "NaN"}, 109, {1}, 109, {1}},
        {"non_finite_list", 121, 0, {"NaN", "INF", "2"}, 109, {}, 109, {mv}},
        {"list_with_hole", 121, 123, {"4"}, 123, {4}, 123, {4}},
        {"matrix", 120, 120, {"old"}, 120, {-9}, 120, {-9}},
    };
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "parameters.xml").IsOK());
    for (const auto& [name, valueCode, stringCode, strings, intCode, ints, doubleCode, doubles] :
         cases) {
        std::string value;
        EXPECT_EQ(Code(parser.GetParameter(name, value)), valueCode) << name;
        auto get = [&, n = name](auto& out) { return parser.GetArray(n, out); };
        ExpectRead(get, Strings{"old"}, stringCode, strings, name);
        ExpectRead(get, Ints{-9}, intCode, ints, name);
        ExpectRead(get, Doubles{-9}, doubleCode, doubles, name);
    }
}

// Where an array fails, a matrix leaves the item out of its row; an empty
// string is kept, and every row keeps its place.
TEST(SettingsArrays, MatrixRowsKeepTheirPlaces)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "parameters.xml").IsOK());
    std::vector<Strings> strings;
    EXPECT_TRUE(parser.GetMatrix("matrix", strings).IsOK());
    EXPECT_EQ(strings, (std::vector<Strings>{{"1", "-2", "x", "3"}, {}, {"", "NaN"}}));
    std::vector<Ints> ints;
    EXPECT_TRUE(parser.GetMatrix("matrix", ints).IsOK());
    EXPECT_EQ(ints, (std::vector<Ints>{{1, 3}, {}, {}}));
    std::vector<Doubles> doubles;
    EXPECT_TRUE(parser.GetMatrix("matrix", doubles).IsOK());
    EXPECT_EQ(doubles, (std::vector<Doubles>{{1, -2, 3}, {}, {ZRMV::gMissingValue}}));

    ints = {{5}};
    EXPECT_TRUE(parser.GetMatrix("no_rows", ints).IsOK());
    EXPECT_TRUE(ints.empty());
    // A Parameter is no matrix.
    ints = {{5}};
    EXPECT_EQ(Code(parser.GetMatrix("list_only", ints)), 120);
    EXPECT_EQ(ints, std::vector<Ints>{{5}});
}

// Variable roles: the array reading against the two readings of names, and
// which reading and name each role query uses.
// The Parameter "names:X" of parameters.xml read by GetArray, by the list
// form of GetVariables and by its single form.
TEST(SettingsRoles, ArrayReadingAgainstNameReadings)
{
    // name; GetArray code, names; list form code, names; single form code, name
    const std::tuple<const char*, long, Names, long, Names, long, std::string> cases[] = {
        {"list", 0, {"a"}, 108, {}, 108, "old"},
        {"value_and_list", 0, {"a"}, 0, {"v"}, 0, "v"},
        {"marked_value", 0, {"v"}, 122, {}, 0, "v"},
        {"marked", 123, {}, 122, {}, 121, "old"},
        {"marked_empty_list", 123, {}, 0, {}, 121, "old"},
        {"marked_hole", 123, {"a"}, 108, {"a"}, 121, "old"},
        {"marked_noise", 0, {"a", "b c"}, 0, {"a", "b c"}, 121, "old"},
        {"empty_value", 0, {}, 0, {}, 0, ""},
        {"unmarked_list", 0, {"a"}, 108, {}, 108, "old"},
        {"missing", 120, {"old"}, 120, {"old"}, 120, "old"},
    };
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "parameters.xml").IsOK());
    for (const auto& [suffix, arrayCode, arrayNames, listCode, listNames, singleCode, single] :
         cases) {
        const std::string name = std::string("names:") + suffix;
        auto array = [&](Names& out) { return parser.GetArray(name.c_str(), out); };
        auto names = [&](auto& out) { return parser.GetVariables(name.c_str(), out); };
        ExpectRead(array, Names{"old"}, arrayCode, arrayNames, name);
        ExpectRead(names, Names{"old"}, listCode, listNames, name);
        ExpectRead(names, std::string("old"), singleCode, single, name);
    }
}

// Each role Parameter of roles.xml answers only to its own query, read the
// way that query reads; role names inside a group are not seen.
TEST(SettingsRoles, EachQueryReadsItsParameter)
{
    using Query = ZRCommon::ZRStatus (ZRSettingsParser::*)(Names&) const;
    const std::pair<Query, Names> cases[] = {
        {&ZRSettingsParser::GetTargetVars, {"t"}},
        {&ZRSettingsParser::GetPredictors, {"i"}},
        {&ZRSettingsParser::GetCatResponseVars, {"cr"}},
        {&ZRSettingsParser::GetContResponseVars, {"kr"}},
        {&ZRSettingsParser::GetCatPredictors, {"cp"}},
        {&ZRSettingsParser::GetContPredictors, {"kp"}},
    };
    ZRSettingsParser roles;
    ASSERT_TRUE(ParseFile(roles, "roles.xml").IsOK());
    ZRSettingsParser grouped;
    ASSERT_TRUE(ParseFile(grouped, "parameters.xml").IsOK());
    for (const auto& [query, expected] : cases) {
        ExpectRead([&, q = query](Names& out) { return (roles.*q)(out); }, Names{}, 0, expected,
                   "");
        ExpectRead([&, q = query](Names& out) { return (grouped.*q)(out); }, Names{"old"}, 120,
                   Names{"old"}, "");
    }
    std::string weight;
    EXPECT_TRUE(roles.GetFrequencyWeight(weight).IsOK());
    EXPECT_EQ(weight, "w");
    EXPECT_EQ(Code(grouped.GetFrequencyWeight(weight)), 120);
}

} // namespace
