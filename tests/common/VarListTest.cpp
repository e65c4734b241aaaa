// The variable list stores everything it is given and refuses duplicates.
#include <zrcommonr/zrcommonr.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

using namespace ZRMTD_NAMESPACE;

// What the readers' tests do not ask of the variables they fill (names,
// labels, kinds, roles, margins, values, value labels, cut points and the
// weight: pmmltest::Describe and DataModelVariables over every overload):
// the value texts, the number of values and the bin count.
TEST(VarList, ValueTextsAndCounts)
{
    using Texts = std::vector<std::string>;
    using Numbers = std::vector<double>;
    ZRVarList list;
    EXPECT_EQ(0, list.AddCatVar("colour", "Colour", Texts{"red", "blue"}, Texts{"Red", "Blue"},
                                IZRVariable::eRoleTarget));
    EXPECT_EQ(1, list.AddCatVar("grade", "", Numbers{1, 2.5, ZRMV::gMissingValue},
                                IZRVariable::eRoleInput));
    EXPECT_EQ(2, list.AddContVar("age", "Age", 0, 120, IZRVariable::eRoleAltInput, true, 5));
    EXPECT_EQ(3,
              list.AddContVar("income", "", -1, 9, Numbers{2, 4}, true, IZRVariable::eRoleInput));
    EXPECT_EQ("blue", list.GetVarAt(0)->GetEncoder()->GetValueText(1));
    const IZREncoder& grade = *list.GetVarAt(1)->GetEncoder();
    EXPECT_EQ((Texts{"1", "2.5", "", ""}), (Texts{grade.GetValueText(0), grade.GetValueText(1),
                                                  grade.GetValueText(3), grade.GetValueText(-1)}));
    EXPECT_EQ(
        (Numbers{2, 3, 5, 3}),
        (Numbers{1.0 * list.GetVarAt(0)->GetNValues(), 1.0 * list.GetVarAt(1)->GetNValues(),
                 1.0 * list.GetVarAt(2)->GetBinCount(), 1.0 * list.GetVarAt(3)->GetBinCount()}));
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

// An index out of range gives no variable and a spare encoder that no
// variable sees (what the encoder records and in which order: the readers'
// tests, through pmmltest::Describe and pmmltest::Filled).
TEST(VarList, IndexOutOfRange)
{
    ZRVarList list;
    const ZRVarList& constList = list;
    EXPECT_EQ(nullptr, list.GetVarAt(0));
    EXPECT_EQ(nullptr, constList.GetVarAt(-1));
    IZREncoder* spare = list.GetEncoderAt(7);
    ASSERT_NE(nullptr, spare);
    spare->AddMissing(1.0, "");
    list.AddContVar("x", "", 0, 10, std::vector<double>{5}, true, IZRVariable::eRoleInput);
    ASSERT_EQ(list.GetEncoderAt(0), list.GetVarAt(0)->GetEncoder());
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
