// How each Field becomes a variable: kind, storage code, role, the weight
// variable, and the bin request of continuous variables.
#include "DataModelTestUtil.h"

#include <zrcommonr/ZRVarList.h>

#include <gtest/gtest.h>

#include <limits>

using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;

TEST(DataModelKinds, StorageAndMeasureGiveKindAndStorageCode)
{
    struct Case { const char* storage; const char* measure; int type; int code; };
    const Case cases[] = {
        {"integer", "continuous", 1, 1}, {"real", "continuous", 1, 2},
        {"string", "continuous", 1, 3},  {"date", "continuous", 1, 4},
        {"time", "nominal", 2, 5},       {"timestamp", "ordinal", 2, 6},
        {"integer", "flag", 2, 1},       {"string", "nominal", 3, 3},
        {"real", "Continuous", 2, 2},    {"string", "", 3, 3},
    };
    std::string fields;
    for (std::size_t i = 0; i < sizeof(cases) / sizeof(cases[0]); ++i)
        fields += "<Field name='v" + std::to_string(i) + "' storage='" + cases[i].storage +
                  "' measure='" + cases[i].measure + "'/>";
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(zrxtest::Model(fields), list), 0);
    ASSERT_EQ(list.Size(), sizeof(cases) / sizeof(cases[0]));
    for (std::size_t i = 0; i < list.Size(); ++i) {
        const IZRVariable* v = list.GetVarAt(int(i));
        EXPECT_EQ(v->GetVarType(), cases[i].type) << cases[i].storage << "/" << cases[i].measure;
        EXPECT_EQ(v->GetValueFormat(), cases[i].code) << cases[i].storage;
    }
    // A text-valued continuous field has the default bounds whatever its Range.
    const IZRVariable* text = list.GetVarAt(2);
    EXPECT_EQ(text->GetMinimum(), std::numeric_limits<double>::lowest());
    EXPECT_EQ(text->GetMaximum(), std::numeric_limits<double>::max());
}

TEST(DataModelKinds, RolesAndTheAlternateInputRole)
{
    const std::string doc = zrxtest::Model(
        "<Field name='in' storage='real' measure='continuous' role='input'/>"
        "<Field name='cat' storage='string' measure='nominal' role='input'/>"
        "<Field name='t' storage='integer' measure='nominal' role='target'/>"
        "<Field name='none' storage='real' measure='continuous'/>"
        "<Field name='odd' storage='real' measure='continuous' role='Input'/>"
        "<Field name='id' storage='string' measure='nominal' role='reference'/>"
        "<Field name='fw' storage='integer' measure='nominal' role='freqWeight'/>");
    const int plain[] = {4, 4, 2, 0, 0, 0, 3};
    const int alternate[] = {5, 5, 2, 0, 0, 0, 3};
    for (bool alt : {false, true}) {
        ZRVarList list;
        ASSERT_EQ(zrxtest::ParseAndFill(doc, list, alt), 0);
        ASSERT_EQ(list.Size(), 7u);
        for (int i = 0; i < 7; ++i) {
            EXPECT_EQ(list.GetVarAt(i)->GetRole(), alt ? alternate[i] : plain[i])
                << list.GetVarAt(i)->GetName();
            EXPECT_FALSE(list.GetVarAt(i)->IsWeight());
        }
    }
}

TEST(DataModelKinds, ContinuousFrequencyWeightBecomesTheWeightVariable)
{
    ZRVarList list;
    ASSERT_EQ(zrxtest::ParseAndFill(
                  zrxtest::Model("<Field name='w' displayLabel='Weight' storage='real'"
                                 " measure='continuous' role='freqWeight'>"
                                 "<Range minValue='1' maxValue='9'/></Field>"),
                  list, true, true, 10),
              0);
    ASSERT_EQ(list.Size(), 1u);
    const IZRVariable* w = list.GetVarAt(0);
    EXPECT_TRUE(w->IsWeight());
    EXPECT_EQ(w->GetWeightRounding(), IZRVariable::eRoundNearest);
    EXPECT_EQ(w->GetLabel(), "Weight");
    EXPECT_EQ(w->GetValueFormat(), 2);
    EXPECT_FALSE(w->GetUseBins());       // neither bins nor range reach it
    EXPECT_NE(w->GetMinimum(), 1.0);
}

TEST(DataModelKinds, BinsAreAskedForOnlyWithMoreThanOneBin)
{
    struct Case { bool useBins; int count; bool flag; int passed; };
    const Case cases[] = {{true, 10, true, 10}, {true, 2, true, 2}, {true, 1, false, -1},
                          {true, 0, false, -1}, {true, -5, false, -1}, {false, 10, false, -1}};
    const std::string doc = zrxtest::Model(
        "<Field name='x' storage='real' measure='continuous'/>"
        "<Field name='c' storage='integer' measure='nominal'><Values><Value value='1'/>"
        "</Values></Field>");
    for (const Case& c : cases) {
        ZRVarList list;
        ASSERT_EQ(zrxtest::ParseAndFill(doc, list, false, c.useBins, c.count), 0);
        EXPECT_EQ(list.GetVarAt(0)->GetUseBins(), c.flag) << c.useBins << c.count;
        EXPECT_EQ(list.GetVarAt(0)->GetBinCount(), c.passed) << c.useBins << c.count;
        EXPECT_FALSE(list.GetVarAt(1)->GetUseBins());
    }
}
