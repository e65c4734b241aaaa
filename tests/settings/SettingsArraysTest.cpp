// Arrays of a Parameter against matrices of a "MatrixParmeter": the same
// faults, strict in the one and lenient in the other.
#include "SettingsTestUtil.h"

#include <zrcommonr/ZRMV.h>

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;
using Strings = std::vector<std::string>;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;

namespace {

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

} // namespace
