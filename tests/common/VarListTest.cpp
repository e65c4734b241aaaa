// The variable list stores everything it is given and refuses duplicates.
#include <zrcommonr/zrcommonr.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <map>
#include <random>
#include <string>

using namespace ZRMTD_NAMESPACE;

TEST(VarList, StoresCategoricalVariablesWithValuesAndLabels)
{
    ZRVarList list;
    EXPECT_EQ(0, list.AddCatVar("colour", "Colour", std::vector<std::string>{"red", "blue"},
                                std::vector<std::string>{"Red", "Blue"}, IZRVariable::eRoleTarget));
    EXPECT_EQ(1, list.AddCatVar("grade", "", std::vector<double>{1, 2.5, ZRMV::gMissingValue},
                                IZRVariable::eRoleInput));
    ASSERT_EQ(2u, list.Size());

    const IZRVariable* colour = list.GetVarAt(0);
    ASSERT_NE(nullptr, colour);
    EXPECT_EQ(IZRVariable::eCategoricalString, colour->GetVarType());
    EXPECT_EQ("colour", colour->GetName());
    EXPECT_EQ("Colour", colour->GetLabel());
    EXPECT_EQ(IZRVariable::eRoleTarget, colour->GetRole());
    EXPECT_EQ(2, colour->GetNValues());
    EXPECT_EQ("blue", colour->GetEncoder()->GetValueText(1));
    EXPECT_EQ((std::vector<std::string>{"Red", "Blue"}), colour->GetEncoder()->GetValueLabels());

    const IZRVariable* grade = list.GetVarAt(1);
    EXPECT_EQ(IZRVariable::eCategoricalNumeric, grade->GetVarType());
    EXPECT_EQ(3, grade->GetNValues());
    EXPECT_EQ("1", grade->GetEncoder()->GetValueText(0));
    EXPECT_EQ("2.5", grade->GetEncoder()->GetValueText(1));
    EXPECT_EQ("", grade->GetEncoder()->GetValueText(3));
    EXPECT_EQ("", grade->GetEncoder()->GetValueText(-1));
    EXPECT_TRUE(grade->GetEncoder()->GetValueLabels().empty());
}

TEST(VarList, StoresContinuousAndWeightVariables)
{
    ZRVarList list;
    EXPECT_EQ(0, list.AddContVar("plain", "", IZRVariable::eRoleNone));
    EXPECT_EQ(1, list.AddContVar("age", "Age", 0, 120, IZRVariable::eRoleAltInput, true, 5));
    EXPECT_EQ(2, list.AddContVar("income", "", -1, 9, std::vector<double>{2, 4}, true,
                                 IZRVariable::eRoleInput));
    EXPECT_EQ(3, list.SetWeightVar("w", "Weight", IZRVariable::eRoundNearest));

    const IZRVariable* plain = list.GetVarAt(0);
    EXPECT_EQ(IZRVariable::eContinuous, plain->GetVarType());
    EXPECT_EQ(-DBL_MAX, plain->GetMinimum());
    EXPECT_EQ(DBL_MAX, plain->GetMaximum());
    EXPECT_FALSE(plain->GetUseBins());
    EXPECT_EQ(-1, plain->GetBinCount());

    const IZRVariable* age = list.GetVarAt(1);
    EXPECT_EQ(0, age->GetMinimum());
    EXPECT_EQ(120, age->GetMaximum());
    EXPECT_TRUE(age->GetUseBins());
    EXPECT_EQ(5, age->GetBinCount());
    EXPECT_EQ(IZRVariable::eRoleAltInput, age->GetRole());

    const IZRVariable* income = list.GetVarAt(2);
    EXPECT_EQ((std::vector<double>{2, 4}), income->GetCutPoints());
    EXPECT_EQ(3, income->GetBinCount());

    const IZRVariable* weight = list.GetVarAt(3);
    EXPECT_TRUE(weight->IsWeight());
    EXPECT_EQ(IZRVariable::eRoleFreqWeight, weight->GetRole());
    EXPECT_EQ(IZRVariable::eRoundNearest, weight->GetWeightRounding());
    EXPECT_FALSE(age->IsWeight());
}

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
    EXPECT_EQ(1u, list.Size());
    // An empty name is a name like any other, once.
    EXPECT_EQ(1, list.AddContVar("", "", IZRVariable::eRoleInput));
    EXPECT_LT(list.AddContVar("", "", IZRVariable::eRoleInput), 0);
}

TEST(VarList, RenamedVariableIsFoundByItsNewName)
{
    ZRVarList list;
    list.AddContVar("old", "", IZRVariable::eRoleInput);
    list.GetVarAt(0)->SetName("new");
    EXPECT_EQ(0, list.FindVar("new"));
    EXPECT_EQ(-1, list.FindVar("old"));
    EXPECT_EQ(1, list.AddContVar("old", "", IZRVariable::eRoleInput));
    EXPECT_LT(list.AddContVar("new", "", IZRVariable::eRoleInput), 0);
}

TEST(VarList, EncoderRecordsMissingValuesRangeAndCallOrder)
{
    ZRVarList list;
    list.AddContVar("x", "", 0, 10, std::vector<double>{5}, true, IZRVariable::eRoleInput);
    IZREncoder* encoder = list.GetEncoderAt(0);
    ASSERT_EQ(encoder, list.GetVarAt(0)->GetEncoder());
    encoder->SetBinLabels({"low", "high"});
    encoder->AddMissing(-9.0, "refused");
    encoder->AddMissing(std::string("n/a"), "");
    encoder->SetMissingRange(-99, -90);

    EXPECT_EQ((std::vector<std::string>{"low", "high"}), encoder->GetBinLabels());
    ASSERT_EQ(1u, encoder->GetNumericMissing().size());
    EXPECT_EQ(-9.0, encoder->GetNumericMissing()[0].first);
    EXPECT_EQ("refused", encoder->GetNumericMissing()[0].second);
    ASSERT_EQ(1u, encoder->GetStringMissing().size());
    EXPECT_EQ("n/a", encoder->GetStringMissing()[0].first);
    EXPECT_TRUE(encoder->HasMissingRange());
    EXPECT_EQ(-99, encoder->GetMissingRangeLower());
    EXPECT_EQ(-90, encoder->GetMissingRangeUpper());
    EXPECT_EQ(
        (std::vector<std::string>{"SetBinLabels", "AddMissing", "AddMissing", "SetMissingRange"}),
        encoder->GetCallOrder());
}

TEST(VarList, OutOfRangeIndexGivesNullVariableAndASpareEncoder)
{
    ZRVarList list;
    const ZRVarList& constList = list;
    EXPECT_EQ(nullptr, list.GetVarAt(0));
    EXPECT_EQ(nullptr, constList.GetVarAt(-1));
    IZREncoder* spare = list.GetEncoderAt(7);
    ASSERT_NE(nullptr, spare);
    spare->AddMissing(1.0, ""); // goes nowhere that a variable sees
    list.AddContVar("x", "", IZRVariable::eRoleInput);
    EXPECT_TRUE(list.GetEncoderAt(0)->GetNumericMissing().empty());
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
