// Values, value labels and ranges of the variables, and the bundled example.
#include "DataModelTestUtil.h"
#include "ZRXTestDom.h"

#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRVarList.h>

#include <gtest/gtest.h>

#include <limits>

using ZRMTD_NAMESPACE::IZREncoder;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;

namespace {

typedef std::vector<std::string> Texts;
typedef std::vector<double> Numbers;

const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();

} // namespace

TEST(DataModelValues, NumberValuesKeepLabelsOnlyOnePerValue)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(
        // 1, x, 3 with three labels: two numbers, so the labels are dropped.
        "<Field name='a' storage='integer' measure='nominal'><Values>"
        "<Value value='1' displayLabel='one'/><Value value='x' displayLabel='ex'/>"
        "<Value value='3' displayLabel='three'/></Values></Field>"
        // NaN is the missing value, INF is dropped with its label kept.
        "<Field name='b' storage='real' measure='ordinal'><Values>"
        "<Value value='NaN' displayLabel='unknown'/><Value value='INF'/>"
        "<Value value='2.5' displayLabel='mid'/></Values></Field>"
        // Values elements add up; a Value without attributes is passed over,
        // a label without a value still counts.
        "<Field name='c' storage='integer' measure='nominal'>"
        "<Values><Value value='10' displayLabel='ten'/><Value/></Values><Range/>"
        "<Values><Value displayLabel='orphan'/><Value value='20'/></Values></Field>"
        "<Field name='d' storage='integer' measure='nominal'><Values>"
        "<Value value='7' displayLabel='seven'/><Value value='8' displayLabel='eight'/>"
        "<Value other='x'/></Values></Field>"), list), 0);
    ASSERT_EQ(list.Size(), 4u);
    const IZREncoder* a = list.GetVarAt(0)->GetEncoder();
    EXPECT_EQ(a->GetNumericValues(), (Numbers{1, 3}));
    EXPECT_TRUE(a->GetValueLabels().empty());
    EXPECT_EQ(list.GetVarAt(0)->GetNValues(), 2);
    const IZREncoder* b = list.GetVarAt(1)->GetEncoder();
    EXPECT_EQ(b->GetNumericValues(), (Numbers{ZRMV::gMissingValue, 2.5}));
    EXPECT_EQ(b->GetValueLabels(), (Texts{"unknown", "mid"}));
    const IZREncoder* c = list.GetVarAt(2)->GetEncoder();
    EXPECT_EQ(c->GetNumericValues(), (Numbers{10, 20}));
    EXPECT_EQ(c->GetValueLabels(), (Texts{"ten", "orphan"}));
    const IZREncoder* d = list.GetVarAt(3)->GetEncoder();
    EXPECT_EQ(d->GetNumericValues(), (Numbers{7, 8}));
    EXPECT_EQ(d->GetValueLabels(), (Texts{"seven", "eight"}));
}

TEST(DataModelValues, TextValuesAreKeptAsWritten)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(
        "<Field name='r\xC3\xA9gion' displayLabel='R\xC3\xA9gion &amp; pays' storage='string'"
        " measure='nominal'><Values><Value value='NaN' displayLabel='n'/>"
        "<Value value='' displayLabel='blank'/><Value value=' x ' displayLabel='spaced'/>"
        "</Values><Range minValue='1' maxValue='2'/></Field>"
        "<Field name='s' storage='string' measure='nominal'><Values><Value value='a'/>"
        "<Value value='b' displayLabel='bee'/></Values></Field>"
        "<Field name='' storage='string' measure='nominal'/>"), list), 0);
    ASSERT_EQ(list.Size(), 3u);
    const IZRVariable* v = list.GetVarAt(0);
    EXPECT_EQ(v->GetName(), "r\xC3\xA9gion");
    EXPECT_EQ(v->GetLabel(), "R\xC3\xA9gion & pays");
    EXPECT_EQ(v->GetEncoder()->GetStringValues(), (Texts{"NaN", "", " x "}));
    EXPECT_EQ(v->GetEncoder()->GetValueLabels(), (Texts{"n", "blank", "spaced"}));
    EXPECT_EQ(v->GetEncoder()->GetValueText(2), " x ");
    EXPECT_EQ(list.GetVarAt(1)->GetEncoder()->GetStringValues(), (Texts{"a", "b"}));
    EXPECT_TRUE(list.GetVarAt(1)->GetEncoder()->GetValueLabels().empty());
    EXPECT_EQ(list.GetVarAt(2)->GetName(), "");
    EXPECT_EQ(list.GetVarAt(2)->GetLabel(), "");
}

TEST(DataModelValues, RangesOverrideBoundByBound)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(
        "<Field name='a' storage='real' measure='continuous'><Range minValue='x' maxValue='10'/></Field>"
        "<Field name='b' storage='real' measure='continuous'><Range minValue='-5'/>"
        "<Range maxValue='1e3'/><Range minValue='INF' maxValue='-INF'/></Field>"
        "<Field name='c' storage='integer' measure='continuous'><Range minValue='NaN'/>"
        "<Range minValue='3' maxValue='1'/></Field>"
        "<Field name='d' storage='date' measure='continuous'/>"
        "<Field name='e' storage='real' measure='continuous'>"
        "<Values><Value value='4'/></Values></Field>"), list), 0);
    ASSERT_EQ(list.Size(), 5u);
    EXPECT_EQ(list.GetVarAt(0)->GetMinimum(), kLowest);
    EXPECT_EQ(list.GetVarAt(0)->GetMaximum(), 10);
    EXPECT_EQ(list.GetVarAt(1)->GetMinimum(), -5);
    EXPECT_EQ(list.GetVarAt(1)->GetMaximum(), 1000);
    // The last Range wins, also when it makes the bounds cross: the reader
    // passes on what the document says.
    EXPECT_EQ(list.GetVarAt(2)->GetMinimum(), 3);
    EXPECT_EQ(list.GetVarAt(2)->GetMaximum(), 1);
    EXPECT_EQ(list.GetVarAt(3)->GetMinimum(), kLowest);
    EXPECT_EQ(list.GetVarAt(3)->GetMaximum(), kHighest);
    // A continuous variable ignores its value list.
    EXPECT_EQ(list.GetVarAt(4)->GetNValues(), 0);
}

TEST(DataModelValues, NaNRangeBoundIsTheMissingValue)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(
        "<Field name='c' storage='integer' measure='continuous'><Range minValue='NaN'/></Field>"),
        list), 0);
    EXPECT_EQ(list.GetVarAt(0)->GetMinimum(), ZRMV::gMissingValue);
}

TEST(DataModelValues, TheBundledExampleReadsAsWritten)
{
    const std::string text =
        zrxtest::ReadFile(std::string(ZRX_EXAMPLES_DIR) + "/data/job.datamodel.xml");
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(text, list, false, true, 5), 0);
    ASSERT_EQ(list.Size(), 15u);
    const IZRVariable* income = list.GetVarAt(list.FindVar("income"));
    EXPECT_EQ(income->GetLabel(), "Yearly income (\xE2\x82\xAC)");
    EXPECT_EQ(income->GetMinimum(), 0);
    EXPECT_EQ(income->GetMaximum(), kHighest);
    EXPECT_EQ(income->GetBinCount(), 5);
    const IZRVariable* satisfaction = list.GetVarAt(list.FindVar("satisfaction"));
    EXPECT_EQ(satisfaction->GetVarType(), 2);
    EXPECT_EQ(satisfaction->GetRole(), 2);
    EXPECT_EQ(satisfaction->GetEncoder()->GetValueLabels().back(), "Very happy");
    const IZRVariable* products = list.GetVarAt(list.FindVar("products"));
    EXPECT_EQ(products->GetEncoder()->GetNumericValues(),
              (Numbers{1, 2, 3, ZRMV::gMissingValue, 4}));
    EXPECT_TRUE(products->GetEncoder()->GetValueLabels().empty());  // 2 labels, 5 values
    EXPECT_TRUE(list.GetVarAt(list.FindVar("survey_weight"))->IsWeight());
    EXPECT_EQ(list.GetVarAt(list.FindVar("last_login"))->GetValueFormat(), 6);
    EXPECT_EQ(list.GetVarAt(list.FindVar("branch_code"))->GetRole(), 0);
}
