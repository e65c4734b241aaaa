// Status values, the judgement of univariate statistics, and number texts.
#include <zrcommonr/zrcommonr.h>

#include "ZRXScopedLocale.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

using namespace ZRMTD_NAMESPACE;
using ZRCommon::ZRStatus;

// A default status is OK; any given code, 0 too, is a failure that keeps its
// code and flag through copies. The named codes keep the numbers that callers
// already compare against: 103 to 116, then 118 to 126.
TEST(Status, DefaultIsOkAndAnyGivenCodeIsAFailure)
{
    EXPECT_TRUE(ZRStatus().IsOK());
    EXPECT_EQ(ZRStatus().GetCode(), 0);
    const std::pair<long, bool> given[] = {{120, true}, {0, false}, {0, true}};
    for (const auto& [code, flag] : given) {
        ZRStatus copy = ZRStatus(code, flag);
        EXPECT_EQ(copy, ZRStatus(code, flag));
        EXPECT_NE(copy, ZRStatus());
        EXPECT_EQ(std::make_tuple(copy.IsOK(), copy.GetCode(), copy.GetFlag()),
                  std::make_tuple(false, code, flag));
        copy = ZRStatus();
        EXPECT_TRUE(copy.IsOK());
    }
    // The other named codes are compared as numbers by the tests of the
    // readers, the writer and the combiner; this one is met only by name.
    EXPECT_EQ(ZRCommon::eCannotStart, 103);
}

TEST(MissingValue, IsFiniteEqualToItselfAndApartFromTheOpenBound)
{
    EXPECT_TRUE(std::isfinite(ZRMV::gMissingValue));
    EXPECT_TRUE(ZRMV::IsMissing(ZRMV::gMissingValue));
    EXPECT_NE(-DBL_MAX, ZRMV::gMissingValue);
    EXPECT_FALSE(ZRMV::IsMissing(-DBL_MAX));
}

// Discrete: a known, non-negative total and frequencies. Continuous besides:
// one cut point more than frequencies (or neither), ascending where known,
// and a standard deviation that is missing or not negative.
TEST(UniStats, Validity)
{
    const double m = ZRMV::gMissingValue;
    const std::pair<ZRUniStats, bool> discrete[] = {{ZRUniStats(), false},
                                                    {ZRUniStats("x", 0, {}), true},
                                                    {ZRUniStats("x", 10, {4, 0, 6}), true},
                                                    {ZRUniStats("x", -1, {1}), false},
                                                    {ZRUniStats("x", 10, {4, -1}), false},
                                                    {ZRUniStats("x", std::nan(""), {1}), false},
                                                    {ZRUniStats("x", m, {1}), false}};
    for (const auto& [stats, valid] : discrete)
        EXPECT_EQ(stats.IsValid(), valid) << stats.GetTotalFreq();
    // standard deviation, cut points, frequencies, valid
    const std::tuple<double, std::vector<double>, std::vector<double>, bool> continuous[] = {
        {2, {}, {}, true},          {2, {0, 1, 2}, {1, 2}, true},  {2, {m, 1, m}, {1, 2}, true},
        {2, {0, 1}, {1, 2}, false}, {2, {0, 2, 1}, {1, 2}, false}, {2, {0, 0}, {1}, false},
        {-0.5, {0, 1}, {3}, false}, {m, {0, 1}, {3}, true},        {2, {0, 1}, {m}, false},
    };
    for (const auto& [stdDev, cuts, frequencies, valid] : continuous) {
        ZRUniStats::SummStats summary;
        summary.stdDev = stdDev;
        EXPECT_EQ(ZRUniStats("x", 3, summary, cuts, frequencies).IsValid(), valid)
            << stdDev << " " << cuts.size() << " " << frequencies.size();
    }
}

// The shortest text that reads back to the same double, with a dot also in a
// host locale whose decimal separator is a comma.
TEST(Format, ShortestTextThatReadsBackInAnyLocale)
{
    using ZRXML_NAMESPACE::Format;
    const double inf = std::numeric_limits<double>::infinity();
    const std::tuple<double, bool, const char*> texts[] = {
        {12, false, "12"},
        {0, false, "0"},
        {-3.5, false, "-3.5"},
        {0.1, false, "0.1"},
        {1e21, false, "1e+21"},
        {500, false, "500"},
        {1.2e6, false, "1200000"},
        {1e16, false, "1e+16"},
        {std::nan(""), false, "NaN"},
        {inf, false, "INF"},
        {-inf, false, "-INF"},
        {0.5, false, "0.5"},
        {1.0 / 3, false, "0.3333333333333333"},
        {2.5e-7, false, "2.5e-07"},
        {DBL_MAX, false, "1.7976931348623157e+308"},
        {1e-5, true, "0.00001"}};
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        const zrxtest::ScopedLocale host(locale);
        ASSERT_TRUE(host.Active()) << locale << " is missing";
        for (const auto& [value, fixed, text] : texts)
            EXPECT_EQ(Format(value, fixed, nullptr), text) << locale;
        for (double value : {1.0 / 3, DBL_MAX, -DBL_MAX, DBL_MIN, 5e-324, 123456789.123456789,
                             ZRMV::gMissingValue}) {
            const std::string text = Format(value, false, nullptr);
            double back = 0;
            std::from_chars(text.data(), text.data() + text.size(), back);
            EXPECT_EQ(value, back) << text;
        }
        char buffer[32];
        EXPECT_EQ("2.25", Format(2.25, true, buffer));
        EXPECT_STREQ("2.25", buffer);
    }
}
