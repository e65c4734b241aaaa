// DataField and DerivedField elements as variables: kinds, storage codes,
// margins, missing values, ranges and bins.
#include "SettingsTestUtil.h"

using namespace settingstest;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;
using ZRXPrsUtil::ZRSettingsParser;
using Doubles = std::vector<double>;
using Strings = std::vector<std::string>;

namespace {

// name; kind, storage code; margins of an unbinned continuous variable
using Expected = std::tuple<std::string, int, int, double, double>;

void ExpectVariables(const ZRVarList& list, const std::vector<Expected>& expected)
{
    ASSERT_EQ(list.Size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto& [name, type, storage, minimum, maximum] = expected[i];
        const IZRVariable& v = *list.GetVarAt(static_cast<int>(i));
        const bool margins = type == 1 && !v.GetUseBins();
        EXPECT_EQ(Expected(v.GetName(), v.GetVarType(), v.GetValueFormat(),
                           margins ? v.GetMinimum() : 0, margins ? v.GetMaximum() : 0),
                  Expected(name, type, storage, margins ? minimum : 0, margins ? maximum : 0));
        EXPECT_EQ(v.GetRole(), IZRVariable::eRoleInput) << name;
    }
}

// Every field of fields.xml as a variable, by FillVarList and FillTransDict.
TEST(SettingsFields, FieldsOfAFile)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "fields.xml").IsOK());
    ZRVarList list;
    ASSERT_TRUE(parser.FillVarList(list, false).IsOK());
    ExpectVariables(list, {{"binned", 1, 2, -1, 10},
                           {"numbered_bins", 1, 2, kLowest, kHighest},
                           {"one_bin", 1, 2, -1, 10},
                           {"codes", 2, 1, 0, 0},
                           {"words", 3, 3, 0, 0},
                           {"plain", 1, 2, kLowest, kHighest},
                           {"right_only", 1, 2, kLowest, -5},
                           {"one_point", 1, 1, 3, 3},
                           {"last_interval", 1, 4, kLowest, 7},
                           {"text_cont", 1, 3, kLowest, kHighest},
                           {"odd_optype", 2, 5, 0, 0},
                           {"stamp", 1, 6, kLowest, kHighest}});

    const auto* codes = list.GetVarAt(3)->GetEncoder();
    EXPECT_EQ(codes->GetNumericValues(), (Doubles{1, 2}));
    EXPECT_TRUE(codes->GetValueLabels().empty()); // one label for two values
    EXPECT_EQ(codes->GetNumericMissing(),
              (std::vector<std::pair<double, std::string>>{{9, "bad"}, {8, ""}}));
    EXPECT_TRUE(codes->HasMissingRange());
    EXPECT_EQ(codes->GetMissingRangeLower(), 90);
    EXPECT_EQ(codes->GetMissingRangeUpper(), kHighest);
    const auto* words = list.GetVarAt(4)->GetEncoder();
    EXPECT_EQ(words->GetStringValues(), Strings{""});
    EXPECT_EQ(words->GetValueLabels(), Strings{"empty"});
    EXPECT_FALSE(words->HasMissingRange());
    EXPECT_FALSE(list.GetVarAt(5)->GetEncoder()->HasMissingRange());

    ZRVarList derived;
    ASSERT_TRUE(parser.FillTransDict(derived).IsOK());
    ExpectVariables(derived, {{"binned_bins", 3, 3, 0, 0},
                              {"numbered_bins_bins", 3, 3, 0, 0},
                              {"one_bin_bins", 3, 3, 0, 0},
                              {"derived_plain", 1, 2, kLowest, kHighest},
                              {"in_extension", 1, 2, 1, 2},
                              {"extension_last", 1, 2, kLowest, 7},
                              {"interval_last", 1, 2, 2, kHighest},
                              {"first_in_extension", 1, 2, 1, 5},
                              {"derived_text", 3, 3, 0, 0},
                              {"self_binned", 1, 2, kLowest, kHighest}});
    EXPECT_FALSE(derived.GetVarAt(9)->GetUseBins());
}

// Bins come from the Discretize of the field; bin numbers as labels are not
// passed on; one bin leaves the field's own margins; a continuous field
// without Discretize stops the walk with 110.
TEST(SettingsFields, BinsFromTheTransformationDictionary)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseFile(parser, "fields.xml").IsOK());
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, true).GetCode(), 110);
    ASSERT_EQ(list.Size(), 5u);
    const IZRVariable& binned = *list.GetVarAt(0);
    EXPECT_TRUE(binned.GetUseBins());
    EXPECT_EQ(Doubles({binned.GetMinimum(), binned.GetMaximum()}), (Doubles{0, 3}));
    EXPECT_EQ(binned.GetCutPoints(), (Doubles{1, 2}));
    EXPECT_EQ(binned.GetEncoder()->GetBinLabels(), (Strings{"lo", "mid", "hi"}));
    EXPECT_EQ(binned.GetEncoder()->GetCallOrder(),
              (Strings{"SetBinLabels", "AddMissing", "SetMissingRange"}));
    EXPECT_EQ(binned.GetValueFormat(), 2);
    EXPECT_TRUE(list.GetVarAt(1)->GetUseBins());
    EXPECT_TRUE(list.GetVarAt(1)->GetEncoder()->GetBinLabels().empty());
    const IZRVariable& oneBin = *list.GetVarAt(2);
    EXPECT_FALSE(oneBin.GetUseBins());
    EXPECT_EQ(Doubles({oneBin.GetMinimum(), oneBin.GetMaximum()}), (Doubles{-1, 10}));

    ZRSettingsParser noDictionary;
    ASSERT_TRUE(Parse(noDictionary, Doc("<DataField name=\"x\" dataType=\"double\" "
                                        "optype=\"continuous\"/>"))
                    .IsOK());
    EXPECT_EQ(noDictionary.FillVarList(list, true).GetCode(), 110);
    EXPECT_TRUE(noDictionary.FillTransDict(list).IsOK());
    EXPECT_EQ(list.Size(), 5u);
}

// Between a good field and another, a faulty field stops the walk: the field
// before stays, nothing after it is read.
TEST(SettingsFields, FaultsStopTheWalk)
{
    const std::pair<const char*, long> cases[] = {
        {R"(<DataField dataType="double" optype="continuous"/>)", 108},
        {R"(<DataField name="x" optype="continuous"/>)", 108},
        {R"(<DataField name="x" dataType="double"/>)", 108},
        {R"(<DataField name="x" dataType="timeSeconds" optype="continuous"/>)", 109},
        {R"(<DataField name="x" dataType="dateDaysSince[1960]" optype="continuous"/>)", 109},
        {R"(<DataField name="x" dataType="boolean" optype="categorical"/>)", 109},
        {R"(<DataField name="x" dataType="Double" optype="continuous"/>)", 109},
        {R"(<DataField name="a" dataType="double" optype="continuous"/>)", 111},
        {R"(<DataField name="x" dataType="double" optype="continuous">
            <Interval leftMargin="4" rightMargin="3"/></DataField>)",
         109},
        {R"(<DataField name="x" dataType="double" optype="continuous">
            <Interval leftMargin="abc"/></DataField>)",
         109},
        // Read, and refused, although a categorical field does not use it.
        {R"(<DataField name="x" dataType="integer" optype="categorical">
            <Interval leftMargin="x"/></DataField>)",
         109},
        {R"(<DerivedField name="x" dataType="timeSeconds" optype="continuous"/>)", 109},
        {R"(<DerivedField name="x" dataType="double" optype="continuous">
            <Extension><Interval leftMargin="3" rightMargin="2"/></Extension></DerivedField>)",
         109},
    };
    for (const auto& [field, code] : cases) {
        const bool derived = std::string(field).find("<Derived") == 0;
        auto good = [derived](const char* name) {
            return std::string(derived ? "<DerivedField" : "<DataField") + " name=\"" + name +
                   "\" dataType=\"double\" optype=\"continuous\"/>";
        };
        const std::string fields = good("a") + field + good("z");
        ZRSettingsParser parser;
        ASSERT_TRUE(Parse(parser, derived ? Doc("", "", fields) : Doc(fields)).IsOK());
        ZRVarList list;
        EXPECT_EQ(
            (derived ? parser.FillTransDict(list) : parser.FillVarList(list, false)).GetCode(),
            code)
            << field;
        EXPECT_EQ(list.Size(), 1u) << field;
    }
}

} // namespace
