// Variable roles: the array reading against the two readings of names, and
// which reading and name each role query uses.
#include "SettingsTestUtil.h"

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;
using Names = std::vector<std::string>;

namespace {

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
