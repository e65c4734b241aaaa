// Arrays of a Parameter against matrices of a "MatrixParmeter": the same
// faults, strict in the one and lenient in the other.
#include "SettingsTestUtil.h"

#include <zrcommonr/ZRMV.h>

#include <gtest/gtest.h>

using namespace settingstest;
using ZRXPrsUtil::ZRSettingsParser;
using Strings = std::vector<std::string>;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;

namespace {

std::string List(const std::string& values)
{
    return "<Parameter name=\"a\"><ListValue>" + values + "</ListValue></Parameter>";
}

TEST(SettingsArrays, ThreeFormsOfOneList)
{
    const double mv = ZRMV::gMissingValue;
    const struct {
        std::string parameter;
        long stringCode;
        Strings strings;
        long intCode;
        Ints ints;
        long doubleCode;
        Doubles doubles;
    } cases[] = {
        {"<Parameter name=\"a\" value=\"7\" isList=\"true\"/>", 0, {"7"}, 0, {7}, 0, {7}},
        {"<Parameter name=\"a\" value=\"\"/>", 0, {}, 109, {}, 109, {}},
        {"<Parameter name=\"a\" value=\"1 2\"/>", 0, {"1 2"}, 109, {}, 109, {}},
        {"<Parameter name=\"a\"/>", 123, {}, 123, {}, 123, {}},
        {"<Parameter name=\"a\" value=\"7\"><ListValue/></Parameter>", 123, {}, 123, {}, 123, {}},
        {"<Parameter name=\"a\" value=\"7\"><ListValue><Value value=\"8\"/></ListValue>"
         "</Parameter>", 0, {"8"}, 0, {8}, 0, {8}},
        {List("<Value value=\"1\"/><Value value=\"-2\"/><Value value=\"3\"/>"), 0,
         {"1", "-2", "3"}, 109, {1}, 0, {1, -2, 3}},
        {List("<Value value=\"1\"/> text <!-- c --><Other/><Value value=\"\"/>"
              "<Value value=\"NaN\"/>"), 0, {"1", "NaN"}, 109, {1}, 109, {1}},
        {List("<Value value=\"NaN\"/><Value value=\"INF\"/><Value value=\"2\"/>"), 0,
         {"NaN", "INF", "2"}, 109, {}, 109, {mv}},
        {List("<Value value=\"4\"/><Value/><Value value=\"5\"/>"), 123, {"4"}, 123, {4}, 123, {4}},
    };
    for (const auto& c : cases) {
        ZRSettingsParser parser;
        ASSERT_TRUE(Parse(parser, Params(c.parameter)).IsOK());
        Strings strings{"old"};
        const ZRCommon::ZRStatus stringResult = parser.GetArray("a", strings);
        EXPECT_EQ(stringResult.GetCode(), c.stringCode) << c.parameter;
        EXPECT_EQ(stringResult.GetFlag(), c.stringCode == 123) << c.parameter;
        EXPECT_EQ(strings, c.strings) << c.parameter;
        Ints ints{-9};
        EXPECT_EQ(parser.GetArray("a", ints).GetCode(), c.intCode) << c.parameter;
        EXPECT_EQ(ints, c.ints) << c.parameter;
        Doubles doubles{-9};
        EXPECT_EQ(parser.GetArray("a", doubles).GetCode(), c.doubleCode) << c.parameter;
        EXPECT_EQ(doubles, c.doubles) << c.parameter;
    }
}

TEST(SettingsArrays, MatrixRowsKeepTheirPlaces)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(Parse(parser, Params("<MatrixParmeter name=\"m\">\n"
                                     "  <ArrayParameter><Value value=\"1\"/><Value value=\"-2\"/>"
                                     "<Value value=\"x\"/><Value/><Value value=\"3\"/>"
                                     "</ArrayParameter>\n"
                                     "  <ArrayParameter/> <!-- c -->\n"
                                     "  <ArrayParameter><Value value=\"\"/><Value value=\"NaN\"/>"
                                     "<Other value=\"9\"/></ArrayParameter>\n"
                                     "</MatrixParmeter>"
                                     "<MatrixParmeter name=\"empty\"> <!-- none --> </MatrixParmeter>"
                                     "<Parameter name=\"p\" value=\"1\"/>"))
                    .IsOK());
    std::vector<Strings> strings;
    EXPECT_TRUE(parser.GetMatrix("m", strings).IsOK());
    EXPECT_EQ(strings, (std::vector<Strings>{{"1", "-2", "x", "3"}, {}, {"", "NaN"}}));
    std::vector<Ints> ints;
    EXPECT_TRUE(parser.GetMatrix("m", ints).IsOK());
    EXPECT_EQ(ints, (std::vector<Ints>{{1, 3}, {}, {}}));
    std::vector<Doubles> doubles;
    EXPECT_TRUE(parser.GetMatrix("m", doubles).IsOK());
    EXPECT_EQ(doubles, (std::vector<Doubles>{{1, -2, 3}, {}, {ZRMV::gMissingValue}}));

    ints = {{5}};
    EXPECT_TRUE(parser.GetMatrix("empty", ints).IsOK());
    EXPECT_TRUE(ints.empty());

    // Each element kind is found by its own query only.
    ints = {{5}};
    const ZRCommon::ZRStatus missing = parser.GetMatrix("p", ints);
    EXPECT_EQ(missing.GetCode(), 120);
    EXPECT_TRUE(missing.GetFlag());
    EXPECT_EQ(ints, std::vector<Ints>{{5}});
    Ints row{5};
    EXPECT_EQ(parser.GetArray("m", row).GetCode(), 120);
    EXPECT_EQ(row, Ints{5});
}

TEST(SettingsArrays, ExampleDocumentListsAndMatrices)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseExample(parser).IsOK());
    Doubles levels;
    ASSERT_TRUE(parser.GetArray("profitLevels", levels).IsOK());
    EXPECT_EQ(levels, (Doubles{0.1, 0.25, 0.5, 0.75, 0.9}));
    std::vector<Ints> costs;
    ASSERT_TRUE(parser.GetMatrix("misclassificationCosts", costs).IsOK());
    EXPECT_EQ(costs, (std::vector<Ints>{{0, 1}, {5, 0}}));
    // A matrix inside a group needs the group's context.
    std::vector<Ints> gains;
    EXPECT_EQ(parser.GetMatrix("gainsBins", gains).GetCode(), 120);
    void* output = parser.GetComplexParameter("output");
    ASSERT_TRUE(parser.GetMatrix("gainsBins", gains, output).IsOK());
    EXPECT_EQ(gains, (std::vector<Ints>{{10, 20, 30}, {50, 100}}));
}

} // namespace
