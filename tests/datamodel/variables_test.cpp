// How each Field becomes a variable: kind, storage code, role, bins, values
// with their labels, and ranges.
#include "DataModelTestUtil.h"
#include "ZRXTestDom.h"

#include <zrcommonr/ZRMV.h>

#include <limits>

using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;

namespace {

typedef std::vector<std::string> Texts;
typedef std::vector<double> Numbers;
const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();
const double kMissing = ZRMV::gMissingValue;

} // namespace

TEST(DataModelVariables, StorageMeasureAndRoleGiveKindCodeAndRole)
{
    struct Case { const char* attributes; int type; int code; int role; int altRole; };
    const Case cases[] = {
        {"storage='integer' measure='continuous' role='input'", 1, 1, 4, 5},
        {"storage='real' measure='continuous' role='Input'", 1, 2, 0, 0},
        {"storage='string' measure='continuous'", 1, 3, 0, 0},
        {"storage='date' measure='continuous' role='target'", 1, 4, 2, 2},
        {"storage='time' measure='nominal' role='input'", 2, 5, 4, 5},
        {"storage='timestamp' measure='ordinal' role='reference'", 2, 6, 0, 0},
        {"storage='real' measure='Continuous' role='freqWeight'", 2, 2, 3, 3},
        {"storage='string' measure='' role='input'", 3, 3, 4, 5},
    };
    std::string fields;
    for (const Case& c : cases)
        fields += "<Field name='v" + std::to_string(fields.size()) + "' " + c.attributes +
                  "><Range minValue='1'/></Field>";
    for (bool alternate : {false, true}) {
        ZRVarList list;
        ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(fields), list, alternate), 0);
        ASSERT_EQ(list.Size(), 8u);
        for (int i = 0; i < 8; ++i) {
            const IZRVariable* v = list.GetVarAt(i);
            EXPECT_EQ(v->GetVarType(), cases[i].type) << cases[i].attributes;
            EXPECT_EQ(v->GetValueFormat(), cases[i].code) << cases[i].attributes;
            EXPECT_EQ(v->GetRole(), alternate ? cases[i].altRole : cases[i].role) << cases[i].attributes;
            EXPECT_FALSE(v->IsWeight());
        }
        // Text-valued: the Range is not read.
        EXPECT_EQ(list.GetVarAt(2)->GetMinimum(), kLowest);
        EXPECT_EQ(list.GetVarAt(0)->GetMinimum(), 1);
    }
}

TEST(DataModelVariables, WeightAndBins)
{
    const std::string doc = zrxtest::Model(
        "<Field name='x' storage='real' measure='continuous'/>"
        "<Field name='w' displayLabel='Weight' storage='real' measure='continuous' role='freqWeight'>"
        "<Range minValue='1'/></Field>");
    struct Case { bool useBins; int count; bool flag; int passed; };
    for (const Case& c : {Case{true, 10, true, 10}, Case{true, 2, true, 2}, Case{true, 1, false, -1},
                          Case{true, -5, false, -1}, Case{false, 10, false, -1}}) {
        ZRVarList list;
        ASSERT_EQ(zrxtest::ParseAndFill(doc, list, false, c.useBins, c.count), 0);
        EXPECT_EQ(list.GetVarAt(0)->GetUseBins(), c.flag) << c.count;
        EXPECT_EQ(list.GetVarAt(0)->GetBinCount(), c.passed) << c.count;
        const IZRVariable* w = list.GetVarAt(1);
        EXPECT_TRUE(w->IsWeight());
        EXPECT_EQ(w->GetWeightRounding(), IZRVariable::eRoundNearest);
        EXPECT_EQ(w->GetLabel(), "Weight");
        EXPECT_FALSE(w->GetUseBins());   // neither bins nor range reach it
        EXPECT_NE(w->GetMinimum(), 1.0);
    }
}

TEST(DataModelVariables, ValuesKeepTheirLabelsOnlyOnePerValue)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(
        // 1, x, 3 with three labels: two numbers, so the labels are dropped.
        "<Field name='a' storage='integer' measure='nominal'><Values><Value value='1' displayLabel='one'/>"
        "<Value value='x' displayLabel='ex'/><Value value='3' displayLabel='three'/></Values></Field>"
        // NaN is the missing value, INF is dropped; Values add up; a Value
        // without attributes is passed over, a label without a value counts.
        "<Field name='b' storage='real' measure='ordinal'><Values><Value value='NaN' displayLabel='n'/>"
        "<Value value='INF'/><Value/></Values><Range/><Values><Value displayLabel='m'/></Values></Field>"
        "<Field name='r\xC3\xA9gion' displayLabel='&amp; pays' storage='string' measure='nominal'>"
        "<Values><Value value='NaN' displayLabel='n'/><Value value=' x ' displayLabel='s'/></Values>"
        "</Field><Field name='' storage='string' measure='nominal'><Values><Value value='a'/>"
        "<Value value='b' displayLabel='bee'/></Values></Field>"), list), 0);
    ASSERT_EQ(list.Size(), 4u);
    EXPECT_EQ(list.GetVarAt(0)->GetEncoder()->GetNumericValues(), (Numbers{1, 3}));
    EXPECT_TRUE(list.GetVarAt(0)->GetEncoder()->GetValueLabels().empty());
    EXPECT_EQ(list.GetVarAt(1)->GetEncoder()->GetNumericValues(), (Numbers{kMissing}));
    EXPECT_TRUE(list.GetVarAt(1)->GetEncoder()->GetValueLabels().empty());  // n, m: 2 for 1
    const IZRVariable* region = list.GetVarAt(2);
    EXPECT_EQ(region->GetName(), "r\xC3\xA9gion");
    EXPECT_EQ(region->GetLabel(), "& pays");
    EXPECT_EQ(region->GetEncoder()->GetStringValues(), (Texts{"NaN", " x "}));
    EXPECT_EQ(region->GetEncoder()->GetValueLabels(), (Texts{"n", "s"}));
    EXPECT_EQ(list.GetVarAt(3)->GetEncoder()->GetStringValues(), (Texts{"a", "b"}));
    EXPECT_TRUE(list.GetVarAt(3)->GetEncoder()->GetValueLabels().empty());
}

TEST(DataModelVariables, RangesOverrideBoundByBound)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(
        "<Field name='a' storage='real' measure='continuous'><Range minValue='x' maxValue='10'/></Field>"
        "<Field name='b' storage='real' measure='continuous'><Range minValue='-5'/><Range maxValue='1e3'/>"
        "<Range minValue='INF' maxValue='-INF'/></Field>"
        "<Field name='c' storage='integer' measure='continuous'><Range minValue='NaN' maxValue='1'/></Field>"
        "<Field name='d' storage='date' measure='continuous'><Values><Value value='4'/></Values></Field>"),
        list), 0);
    const Numbers minimum = {kLowest, -5, kMissing, kLowest}, maximum = {10, 1000, 1, kHighest};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(list.GetVarAt(i)->GetMinimum(), minimum[i]) << i;
        EXPECT_EQ(list.GetVarAt(i)->GetMaximum(), maximum[i]) << i;
    }
    EXPECT_EQ(list.GetVarAt(3)->GetNValues(), 0);  // continuous: no value list
}

TEST(DataModelVariables, TheBundledExampleReadsAsWritten)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(
                  zrxtest::ReadFile(std::string(ZRX_EXAMPLES_DIR) + "/data/job.datamodel.xml"), list),
              0);
    ASSERT_EQ(list.Size(), 15u);
    const IZRVariable* income = list.GetVarAt(list.FindVar("income"));
    EXPECT_EQ(income->GetLabel(), "Yearly income (\xE2\x82\xAC)");
    EXPECT_EQ(income->GetMinimum(), 0);
    EXPECT_EQ(list.GetVarAt(list.FindVar("satisfaction"))->GetEncoder()->GetValueLabels().back(),
              "Very happy");
    EXPECT_EQ(list.GetVarAt(list.FindVar("products"))->GetEncoder()->GetNumericValues(),
              (Numbers{1, 2, 3, kMissing, 4}));
    EXPECT_TRUE(list.GetVarAt(list.FindVar("survey_weight"))->IsWeight());
    EXPECT_EQ(list.GetVarAt(list.FindVar("last_login"))->GetValueFormat(), 6);
}
