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

TEST(Status, DefaultIsOkAndAnyCodeIsAFailure)
{
    ZRStatus ok;
    EXPECT_TRUE(ok.IsOK());
    EXPECT_EQ(0, ok.GetCode());
    const ZRStatus soft(120, true);
    EXPECT_FALSE(soft.IsOK());
    EXPECT_EQ(120, soft.GetCode());
    EXPECT_TRUE(soft.GetFlag());
    ZRStatus copy = soft;
    EXPECT_EQ(soft, copy);
    copy = ok;
    EXPECT_TRUE(copy.IsOK());
}

// The named codes keep the numbers that callers already compare against.
TEST(Status, NamedCodesHaveTheirPublishedNumbers)
{
    const struct {
        long named;
        long number;
    } codes[] = {{ZRCommon::eCannotStart, 103},         {ZRCommon::eCannotParse, 104},
                 {ZRCommon::eWrongRoot, 105},           {ZRCommon::eNoDataDictionary, 106},
                 {ZRCommon::eNoDocument, 107},          {ZRCommon::eAttributeAbsent, 108},
                 {ZRCommon::eNotAccepted, 109},         {ZRCommon::eNoBins, 110},
                 {ZRCommon::eVariableRefused, 111},     {ZRCommon::eNoModel, 112},
                 {ZRCommon::eChildAbsent, 113},         {ZRCommon::eBadFrequencies, 114},
                 {ZRCommon::eIntervalsDontFit, 115},    {ZRCommon::eInvalidStatistics, 116},
                 {ZRCommon::eCannotWrite, 118},         {ZRCommon::eNoParameters, 119},
                 {ZRCommon::eNoSuchParameter, 120},     {ZRCommon::eIsList, 121},
                 {ZRCommon::eNoListValue, 122},         {ZRCommon::eNoValue, 123},
                 {ZRCommon::eOtherFunction, 124},       {ZRCommon::eIsMiningModel, 125},
                 {ZRCommon::eSplitValuesDontMatch, 126}};
    for (const auto& code : codes) {
        EXPECT_EQ(code.number, code.named);
        EXPECT_EQ(code.number, ZRStatus(code.named, false).GetCode());
    }
}

TEST(Status, ACodeOfZeroGivenIsAFailureToo)
{
    for (const bool flag : {false, true}) {
        const ZRStatus given(0, flag);
        EXPECT_FALSE(given.IsOK());
        EXPECT_EQ(0, given.GetCode());
        EXPECT_EQ(flag, given.GetFlag());
        EXPECT_NE(ZRStatus(), given);
        const ZRStatus copy = given;
        EXPECT_FALSE(copy.IsOK());
    }
}

TEST(MissingValue, IsFiniteEqualToItselfAndApartFromTheOpenBound)
{
    EXPECT_TRUE(std::isfinite(ZRMV::gMissingValue));
    EXPECT_TRUE(ZRMV::IsMissing(ZRMV::gMissingValue));
    EXPECT_NE(-DBL_MAX, ZRMV::gMissingValue);
    EXPECT_FALSE(ZRMV::IsMissing(-DBL_MAX));
}

TEST(UniStats, DiscreteNeedsNonNegativeTotalAndFrequencies)
{
    EXPECT_FALSE(ZRUniStats().IsValid());
    EXPECT_TRUE(ZRUniStats("x", 0, {}).IsValid());
    EXPECT_TRUE(ZRUniStats("x", 10, {4, 0, 6}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", -1, {1}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", 10, {4, -1}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", std::nan(""), {1}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", ZRMV::gMissingValue, {1}).IsValid());
}

TEST(UniStats, ContinuousNeedsOneCutPointMoreThanFrequenciesAscending)
{
    const double m = ZRMV::gMissingValue;
    ZRUniStats::SummStats summary;
    summary.stdDev = 2;
    EXPECT_TRUE(ZRUniStats("x", 3, summary, {}, {}).IsValid());
    EXPECT_TRUE(ZRUniStats("x", 3, summary, {0, 1, 2}, {1, 2}).IsValid());
    EXPECT_TRUE(ZRUniStats("x", 3, summary, {m, 1, m}, {1, 2}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", 3, summary, {0, 1}, {1, 2}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", 3, summary, {0, 2, 1}, {1, 2}).IsValid());
    EXPECT_FALSE(ZRUniStats("x", 3, summary, {0, 0}, {1}).IsValid());
    summary.stdDev = -0.5;
    EXPECT_FALSE(ZRUniStats("x", 3, summary, {0, 1}, {3}).IsValid());
    summary.stdDev = m;
    EXPECT_TRUE(ZRUniStats("x", 3, summary, {0, 1}, {3}).IsValid());
}

TEST(Format, ShortestTextThatReadsBackToTheSameDouble)
{
    using ZRXML_NAMESPACE::Format;
    EXPECT_EQ("12", Format(12, false, nullptr));
    EXPECT_EQ("0", Format(0, false, nullptr));
    EXPECT_EQ("-3.5", Format(-3.5, false, nullptr));
    EXPECT_EQ("0.1", Format(0.1, false, nullptr));
    EXPECT_EQ("1e+21", Format(1e21, false, nullptr));
    EXPECT_EQ("500", Format(500, false, nullptr));
    EXPECT_EQ("1200000", Format(1.2e6, false, nullptr));
    EXPECT_EQ("1e+16", Format(1e16, false, nullptr));
    EXPECT_EQ("NaN", Format(std::nan(""), false, nullptr));
    EXPECT_EQ("INF", Format(std::numeric_limits<double>::infinity(), false, nullptr));
    EXPECT_EQ("-INF", Format(-std::numeric_limits<double>::infinity(), false, nullptr));
    for (double value :
         {1.0 / 3, DBL_MAX, -DBL_MAX, DBL_MIN, 5e-324, 123456789.123456789, ZRMV::gMissingValue}) {
        const std::string text = Format(value, false, nullptr);
        double back = 0;
        std::from_chars(text.data(), text.data() + text.size(), back);
        EXPECT_EQ(value, back) << text;
    }
    char buffer[32];
    EXPECT_EQ("2.25", Format(2.25, true, buffer));
    EXPECT_STREQ("2.25", buffer);
}

TEST(Format, SameTextsInAHostLocaleWithADecimalComma)
{
    using ZRXML_NAMESPACE::Format;
    const zrxtest::ScopedLocale comma("de_DE.UTF-8");
    ASSERT_TRUE(comma.Active()) << "de_DE.UTF-8 is missing";
    EXPECT_EQ("0.5", Format(0.5, false, nullptr));
    EXPECT_EQ("-3.5", Format(-3.5, false, nullptr));
    EXPECT_EQ("0.3333333333333333", Format(1.0 / 3, false, nullptr));
    EXPECT_EQ("2.5e-07", Format(2.5e-7, false, nullptr));
    EXPECT_EQ("1.7976931348623157e+308", Format(DBL_MAX, false, nullptr));
    EXPECT_EQ("1200000", Format(1.2e6, false, nullptr));
    EXPECT_EQ("0.00001", Format(1e-5, true, nullptr));
    char buffer[32];
    EXPECT_EQ("2.25", Format(2.25, true, buffer));
    EXPECT_STREQ("2.25", buffer);
}
