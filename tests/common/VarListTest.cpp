// The variable list stores everything it is given and refuses duplicates.
#include <zrcommonr/zrcommonr.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <map>
#include <random>
#include <string>

using namespace ZRMTD_NAMESPACE;

// What each kind of variable is given is what it answers.
TEST(VarList, StoresEveryKindOfVariable)
{
    using Texts = std::vector<std::string>;
    using Numbers = std::vector<double>;
    ZRVarList list;
    EXPECT_EQ(0, list.AddCatVar("colour", "Colour", Texts{"red", "blue"}, Texts{"Red", "Blue"},
                                IZRVariable::eRoleTarget));
    EXPECT_EQ(1, list.AddCatVar("grade", "", Numbers{1, 2.5, ZRMV::gMissingValue},
                                IZRVariable::eRoleInput));
    EXPECT_EQ(2, list.AddContVar("plain", "", IZRVariable::eRoleNone));
    EXPECT_EQ(3, list.AddContVar("age", "Age", 0, 120, IZRVariable::eRoleAltInput, true, 5));
    EXPECT_EQ(4,
              list.AddContVar("income", "", -1, 9, Numbers{2, 4}, true, IZRVariable::eRoleInput));
    EXPECT_EQ(5, list.SetWeightVar("w", "Weight", IZRVariable::eRoundNearest));
    ASSERT_EQ(6u, list.Size());
    // name, label, kind, role, number of values, minimum, maximum, bins, bin count, weight
    using Row =
        std::tuple<std::string, std::string, int, int, int, double, double, bool, int, bool>;
    const Row rows[] = {
        {"colour", "Colour", IZRVariable::eCategoricalString, IZRVariable::eRoleTarget, 2, 0, 0,
         false, -1, false},
        {"grade", "", IZRVariable::eCategoricalNumeric, IZRVariable::eRoleInput, 3, 0, 0, false, -1,
         false},
        {"plain", "", IZRVariable::eContinuous, IZRVariable::eRoleNone, 0, -DBL_MAX, DBL_MAX, false,
         -1, false},
        {"age", "Age", IZRVariable::eContinuous, IZRVariable::eRoleAltInput, 0, 0, 120, true, 5,
         false},
        {"income", "", IZRVariable::eContinuous, IZRVariable::eRoleInput, 0, -1, 9, true, 3, false},
        {"w", "Weight", IZRVariable::eContinuous, IZRVariable::eRoleFreqWeight, 0, -DBL_MAX,
         DBL_MAX, false, -1, true},
    };
    for (int i = 0; i < 6; ++i) {
        const IZRVariable& v = *list.GetVarAt(i);
        const bool margins = v.GetVarType() == IZRVariable::eContinuous;
        EXPECT_EQ(Row(v.GetName(), v.GetLabel(), v.GetVarType(), v.GetRole(), v.GetNValues(),
                      margins ? v.GetMinimum() : 0, margins ? v.GetMaximum() : 0, v.GetUseBins(),
                      v.GetBinCount(), v.IsWeight()),
                  rows[i]);
    }
    const IZREncoder& colour = *list.GetVarAt(0)->GetEncoder();
    EXPECT_EQ("blue", colour.GetValueText(1));
    EXPECT_EQ((Texts{"Red", "Blue"}), colour.GetValueLabels());
    const IZREncoder& grade = *list.GetVarAt(1)->GetEncoder();
    EXPECT_EQ((Texts{"1", "2.5", "", ""}), (Texts{grade.GetValueText(0), grade.GetValueText(1),
                                                  grade.GetValueText(3), grade.GetValueText(-1)}));
    EXPECT_TRUE(grade.GetValueLabels().empty());
    EXPECT_EQ((Numbers{2, 4}), list.GetVarAt(4)->GetCutPoints());
    EXPECT_EQ(IZRVariable::eRoundNearest, list.GetVarAt(5)->GetWeightRounding());
}

// Names are unique, an empty one too, and a renamed variable is found by its
// new name alone; labels come one per value.
TEST(VarList, RefusesDuplicateNamesAndUnpairedLabels)
{
    ZRVarList list;
    ASSERT_EQ(0, list.AddContVar("x", "", IZRVariable::eRoleInput));
    EXPECT_LT(list.AddContVar("x", "", IZRVariable::eRoleInput), 0);
    EXPECT_LT(list.AddCatVar("x", "", std::vector<double>{1}, IZRVariable::eRoleInput), 0);
    EXPECT_LT(list.SetWeightVar("x", "", IZRVariable::eRoundNearest), 0);
    EXPECT_LT(list.AddCatVar("y", "", std::vector<double>{1, 2}, std::vector<std::string>{"a"},
                             IZRVariable::eRoleInput),
              0);
    EXPECT_EQ(1, list.AddContVar("", "", IZRVariable::eRoleInput));
    EXPECT_LT(list.AddContVar("", "", IZRVariable::eRoleInput), 0);
    list.GetVarAt(0)->SetName("new");
    EXPECT_EQ(std::make_pair(0, -1), std::make_pair(list.FindVar("new"), list.FindVar("x")));
    EXPECT_EQ(2, list.AddContVar("x", "", IZRVariable::eRoleInput));
    EXPECT_LT(list.AddContVar("new", "", IZRVariable::eRoleInput), 0);
}

// The encoder records what it is given and the order of the calls; an index
// out of range gives no variable and a spare encoder that no variable sees.
TEST(VarList, EncoderRecordsMissingValuesRangeAndCallOrder)
{
    ZRVarList list;
    const ZRVarList& constList = list;
    EXPECT_EQ(nullptr, list.GetVarAt(0));
    EXPECT_EQ(nullptr, constList.GetVarAt(-1));
    IZREncoder* spare = list.GetEncoderAt(7);
    ASSERT_NE(nullptr, spare);
    spare->AddMissing(1.0, "");
    list.AddContVar("x", "", 0, 10, std::vector<double>{5}, true, IZRVariable::eRoleInput);
    IZREncoder* encoder = list.GetEncoderAt(0);
    ASSERT_EQ(encoder, list.GetVarAt(0)->GetEncoder());
    EXPECT_TRUE(encoder->GetNumericMissing().empty());
    encoder->SetBinLabels({"low", "high"});
    encoder->AddMissing(-9.0, "refused");
    encoder->AddMissing(std::string("n/a"), "");
    encoder->SetMissingRange(-99, -90);
    using Texts = std::vector<std::string>;
    EXPECT_EQ((Texts{"low", "high"}), encoder->GetBinLabels());
    EXPECT_EQ((std::vector<std::pair<double, std::string>>{{-9.0, "refused"}}),
              encoder->GetNumericMissing());
    EXPECT_EQ((std::vector<std::pair<std::string, std::string>>{{"n/a", ""}}),
              encoder->GetStringMissing());
    EXPECT_EQ(std::make_tuple(true, -99.0, -90.0),
              std::make_tuple(encoder->HasMissingRange(), encoder->GetMissingRangeLower(),
                              encoder->GetMissingRangeUpper()));
    EXPECT_EQ((Texts{"SetBinLabels", "AddMissing", "AddMissing", "SetMissingRange"}),
              encoder->GetCallOrder());
}

// Thousands of names added and renamed in random order: every name is found
// where a plain map says, and only there.
TEST(VarList, NamesStayFindableThroughManyAdditionsAndRenames)
{
    ZRVarList list;
    std::map<std::string, int> expected;
    std::mt19937 random(11);
    for (int i = 0; i < 4000; ++i) {
        const std::string name = "v" + std::to_string(random() % 6000);
        const int index = list.AddContVar(name, "", IZRVariable::eRoleInput);
        EXPECT_EQ(index >= 0, expected.count(name) == 0) << name;
        if (index >= 0)
            expected[name] = index;
    }
    for (int i = 0; i < 3000; ++i) {
        const int index = static_cast<int>(random() % list.Size());
        IZRVariable* variable = list.GetVarAt(index);
        const std::string before = variable->GetName();
        const std::string after = "v" + std::to_string(random() % 9000);
        if (expected.count(before) != 0 && expected[before] == index)
            expected.erase(before);
        if (expected.count(after) == 0)
            expected[after] = index;
        variable->SetName(after);
    }
    for (int i = 0; i < 9000; ++i) {
        const std::string name = "v" + std::to_string(i);
        const auto found = expected.find(name);
        ASSERT_EQ(list.FindVar(name), found == expected.end() ? -1 : found->second) << name;
    }
}
