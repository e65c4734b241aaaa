// The example job's settings document, read as the example program reads it.
#include "SettingsTestUtil.h"

using namespace settingstest;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRXPrsUtil::ZRSettingsParser;
using Names = std::vector<std::string>;
using Ints = std::vector<int>;

namespace {

TEST(SettingsExample, FieldsAndRoles)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "example").IsOK());
    ZRMTD_NAMESPACE::ZRVarList list;
    ASSERT_TRUE(parser.FillVarList(list, false).IsOK());
    ASSERT_EQ(list.Size(), 32u);
    // name; kind, storage code, number of values; margins of a continuous one
    const std::tuple<const char*, int, int, int, double, double> cases[] = {
        {"age", 1, 1, 0, 18, 99},         {"gender", 3, 3, 3, 0, 0},
        {"employment", 2, 1, 5, 0, 0},    {"last_payment_date", 2, 4, 0, 0, 0},
        {"open_date", 1, 4, 0, 0, 25000},
    };
    for (const auto& [name, type, storage, values, minimum, maximum] : cases) {
        const IZRVariable* v = list.GetVarAt(list.FindVar(name));
        ASSERT_NE(v, nullptr) << name;
        EXPECT_EQ(std::make_tuple(v->GetVarType(), v->GetValueFormat(), v->GetNValues()),
                  std::make_tuple(type, storage, values))
            << name;
        EXPECT_EQ(type == 1 ? std::make_pair(v->GetMinimum(), v->GetMaximum())
                            : std::make_pair(0.0, 0.0),
                  std::make_pair(minimum, maximum))
            << name;
    }
    EXPECT_EQ(list.GetVarAt(list.FindVar("age"))->GetEncoder()->GetNumericMissing().size(), 2u);
    // The derived fields come behind, the range from an Interval in an Extension.
    ASSERT_TRUE(parser.FillTransDict(list).IsOK());
    EXPECT_EQ(list.Size(), 36u);
    EXPECT_EQ(list.GetVarAt(list.FindVar("payment_ratio"))->GetMaximum(), 10);

    Names names;
    EXPECT_TRUE(parser.GetTargetVars(names).IsOK());
    EXPECT_EQ(names, Names{"default_flag"});
    EXPECT_TRUE(parser.GetCatPredictors(names).IsOK());
    EXPECT_EQ(names,
              (Names{"gender", "region", "education", "employment", "home_owner", "product"}));
    EXPECT_TRUE(parser.GetPredictors(names).IsOK());
    EXPECT_EQ(names.size(), 12u);
    std::string weight;
    EXPECT_TRUE(parser.GetFrequencyWeight(weight).IsOK());
    EXPECT_EQ(weight, "case_weight");
}

// Groups open only from their own scope, and a scope sees only its direct
// children.
TEST(SettingsExample, ParametersInNestedGroups)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "example").IsOK());
    std::vector<double> levels;
    ASSERT_TRUE(parser.GetArray("profitLevels", levels).IsOK());
    EXPECT_EQ(levels, (std::vector<double>{0.1, 0.25, 0.5, 0.75, 0.9}));
    std::vector<Ints> costs;
    ASSERT_TRUE(parser.GetMatrix("misclassificationCosts", costs).IsOK());
    EXPECT_EQ(costs, (std::vector<Ints>{{0, 1}, {5, 0}}));

    void* validation = parser.GetComplexParameter("validation");
    ASSERT_NE(validation, nullptr);
    void* holdout = parser.GetComplexParameter("holdout", validation);
    ASSERT_NE(holdout, nullptr);
    EXPECT_EQ(parser.GetComplexParameter("holdout"), nullptr);
    EXPECT_EQ(parser.GetComplexParameter("folds", validation), nullptr); // a Parameter
    double share = 0.0;
    EXPECT_TRUE(parser.GetParameter("sampleShare", share, holdout).IsOK());
    EXPECT_EQ(share, 0.3);
    EXPECT_EQ(Code(parser.GetParameter("sampleShare", share, validation)), 120);
    EXPECT_EQ(Code(parser.GetParameter("sampleShare", share)), 120);
    int folds = 0;
    EXPECT_TRUE(parser.GetParameter("folds", folds, validation).IsOK());
    EXPECT_EQ(folds, 10);
    EXPECT_EQ(parser.GetParameterType("keepFields", holdout), ZRSettingsParser::ParamTypeFieldName);
    Names keep;
    EXPECT_TRUE(parser.GetArray("keepFields", keep, holdout).IsOK());
    EXPECT_EQ(keep, (Names{"customer_id", "default_flag"}));

    std::vector<Ints> gains;
    EXPECT_EQ(Code(parser.GetMatrix("gainsBins", gains)), 120);
    ASSERT_TRUE(parser.GetMatrix("gainsBins", gains, parser.GetComplexParameter("output")).IsOK());
    EXPECT_EQ(gains, (std::vector<Ints>{{10, 20, 30}, {50, 100}}));
}

} // namespace
