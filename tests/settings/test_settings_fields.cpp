// DataField and DerivedField elements as variables: kinds, storage codes,
// margins, missing values, ranges and bins.
#include "SettingsTestUtil.h"

#include <zrcommonr/ZRMV.h>

#include <gtest/gtest.h>

using namespace settingstest;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;
using ZRXPrsUtil::ZRSettingsParser;

namespace {

// Parses `fields` (and `derived`) and fills `list` by FillVarList.
ZRCommon::ZRStatus Fill(ZRVarList& list, const std::string& fields, bool useBins = false,
                        const std::string& derived = std::string())
{
    ZRSettingsParser parser;
    EXPECT_TRUE(Parse(parser, Doc(fields, "", derived)).IsOK());
    return parser.FillVarList(list, useBins);
}

ZRCommon::ZRStatus FillDerived(ZRVarList& list, const std::string& derived)
{
    ZRSettingsParser parser;
    EXPECT_TRUE(Parse(parser, Doc("", "", derived)).IsOK());
    return parser.FillTransDict(list);
}

std::string Field(const std::string& attributes, const std::string& children = std::string(),
                  const char* tag = "DataField")
{
    return std::string("<") + tag + " " + attributes + ">" + children + "</" + tag + ">";
}

TEST(SettingsFields, ExampleDocument)
{
    ZRSettingsParser parser;
    ASSERT_TRUE(ParseExample(parser).IsOK());
    ZRVarList list;
    ASSERT_TRUE(parser.FillVarList(list, false).IsOK());
    ASSERT_EQ(list.Size(), 32u);
    const struct {
        const char* name;
        int type, storage, values;
        double minimum, maximum;
    } cases[] = {
        {"age", 1, 1, 0, 18, 99},
        {"debt_ratio", 1, 2, 0, 0, 5},
        {"gender", 3, 3, 3, kLowest, kHighest},
        {"employment", 2, 1, 5, kLowest, kHighest},
        // A calendar date is no number: no value.
        {"last_payment_date", 2, 4, 0, kLowest, kHighest},
        {"open_date", 1, 4, 0, 0, 25000},
        {"call_time", 1, 5, 0, 0, 86400},
        {"application_ts", 1, 6, 0, kLowest, kHighest},
        {"segment_code", 1, 3, 0, kLowest, kHighest},
    };
    for (const auto& c : cases) {
        const IZRVariable* variable = list.GetVarAt(list.FindVar(c.name));
        ASSERT_NE(variable, nullptr) << c.name;
        EXPECT_EQ(variable->GetVarType(), c.type) << c.name;
        EXPECT_EQ(variable->GetValueFormat(), c.storage) << c.name;
        EXPECT_EQ(variable->GetNValues(), c.values) << c.name;
        EXPECT_EQ(variable->GetRole(), IZRVariable::eRoleInput) << c.name;
        EXPECT_FALSE(variable->IsWeight()) << c.name;
        if (c.type == 1) {
            EXPECT_EQ(variable->GetMinimum(), c.minimum) << c.name;
            EXPECT_EQ(variable->GetMaximum(), c.maximum) << c.name;
        }
    }
    EXPECT_EQ(list.GetVarAt(list.FindVar("age"))->GetEncoder()->GetNumericMissing().size(), 2u);
    // The derived fields come behind, the range from an Interval in an Extension.
    ASSERT_TRUE(parser.FillTransDict(list).IsOK());
    EXPECT_EQ(list.Size(), 36u);
    EXPECT_EQ(list.GetVarAt(list.FindVar("payment_ratio"))->GetMaximum(), 10);
}

TEST(SettingsFields, RequiredAttributesAndDataTypeWords)
{
    const std::string before = Field("name=\"a\" dataType=\"double\" optype=\"continuous\"");
    const std::string after = Field("name=\"z\" dataType=\"double\" optype=\"continuous\"");
    const struct {
        const char* attributes;
        long code;
    } cases[] = {
        {"dataType=\"double\" optype=\"continuous\"", 108},
        {"name=\"x\" optype=\"continuous\"", 108},
        {"name=\"x\" dataType=\"double\"", 108},
        {"name=\"x\" dataType=\"timeSeconds\" optype=\"continuous\"", 109},
        {"name=\"x\" dataType=\"dateDaysSince[1960]\" optype=\"continuous\"", 109},
        {"name=\"x\" dataType=\"boolean\" optype=\"categorical\"", 109},
        {"name=\"x\" dataType=\"Double\" optype=\"continuous\"", 109},
        {"name=\"x\" dataType=\"double\" optype=\"anything\"", 0},
        {"name=\"a\" dataType=\"double\" optype=\"continuous\"", 111},
    };
    for (const auto& c : cases) {
        ZRVarList list;
        EXPECT_EQ(Fill(list, before + Field(c.attributes) + after).GetCode(), c.code)
            << c.attributes;
        // The field before the failing one stays; nothing after it is read.
        EXPECT_EQ(list.Size(), c.code == 0 ? 3u : 1u) << c.attributes;
    }
}

TEST(SettingsFields, IntervalMargins)
{
    const struct {
        const char* dataType;
        const char* optype;
        const char* children;
        long code;
        double minimum, maximum;
    } cases[] = {
        {"double", "continuous", "", 0, kLowest, kHighest},
        {"double", "continuous", "<Interval rightMargin=\"-5\"/>", 0, kLowest, -5},
        {"integer", "continuous", "<Interval leftMargin=\"3\" rightMargin=\"3\"/>", 0, 3, 3},
        {"double", "continuous", "<Interval leftMargin=\"4\" rightMargin=\"3\"/>", 109, 0, 0},
        {"double", "continuous", "<Interval leftMargin=\"abc\"/>", 109, 0, 0},
        {"date", "continuous",
         "<Interval leftMargin=\"1\" rightMargin=\"9\"/><Interval rightMargin=\"7\"/>", 0, kLowest,
         7},
        // Read, and refused, although a categorical field does not use it.
        {"integer", "categorical", "<Interval leftMargin=\"x\"/>", 109, 0, 0},
        {"string", "continuous", "<Interval leftMargin=\"x\"/><Extension name=\"y\"/>", 0,
         kLowest, kHighest},
    };
    for (const auto& c : cases) {
        ZRVarList list;
        const std::string attributes = std::string("name=\"f\" dataType=\"") + c.dataType +
                                       "\" optype=\"" + c.optype + "\"";
        EXPECT_EQ(Fill(list, Field(attributes, c.children)).GetCode(), c.code) << c.children;
        if (c.code != 0) {
            EXPECT_EQ(list.Size(), 0u);
            continue;
        }
        const IZRVariable* variable = list.GetVarAt(0);
        ASSERT_NE(variable, nullptr);
        EXPECT_EQ(variable->GetMinimum(), c.minimum) << c.children;
        EXPECT_EQ(variable->GetMaximum(), c.maximum) << c.children;
        EXPECT_FALSE(variable->GetUseBins());
    }
}

TEST(SettingsFields, ValuesLabelsAndInvalidRange)
{
    ZRVarList list;
    ASSERT_TRUE(Fill(list,
                     Field("name=\"n\" dataType=\"integer\" optype=\"categorical\"",
                           "<Value/><Value value=\"1\" displayValue=\"one\"/><Value value=\"2\"/>"
                           "<Value value=\"9\" property=\"invalid\" displayValue=\"bad\"/>"
                           "<Value value=\"8\" property=\"missing\"/>"
                           "<Extension name=\"invalidRangeLower\" value=\"90\"/>") +
                         Field("name=\"r\" dataType=\"double\" optype=\"continuous\"",
                               "<Extension name=\"invalidRangeUpper\" value=\"oops\"/>") +
                         Field("name=\"s\" dataType=\"string\" optype=\"categorical\"",
                               "<Value value=\"\" displayValue=\"empty\"/>"
                               "<Extension name=\"invalidRangeLower\" value=\"1\"/>"))
                    .IsOK());
    ASSERT_EQ(list.Size(), 3u);
    const auto* numeric = list.GetVarAt(0)->GetEncoder();
    EXPECT_EQ(numeric->GetNumericValues(), (std::vector<double>{1, 2}));
    EXPECT_TRUE(numeric->GetValueLabels().empty());  // one label for two values
    EXPECT_EQ(numeric->GetNumericMissing(),
              (std::vector<std::pair<double, std::string>>{{9, "bad"}, {8, ""}}));
    EXPECT_TRUE(numeric->HasMissingRange());
    EXPECT_EQ(numeric->GetMissingRangeLower(), 90);
    EXPECT_EQ(numeric->GetMissingRangeUpper(), kHighest);
    EXPECT_FALSE(list.GetVarAt(1)->GetEncoder()->HasMissingRange());
    const auto* text = list.GetVarAt(2)->GetEncoder();
    EXPECT_EQ(text->GetStringValues(), std::vector<std::string>{""});
    EXPECT_EQ(text->GetValueLabels(), std::vector<std::string>{"empty"});
    EXPECT_FALSE(text->HasMissingRange());
}

TEST(SettingsFields, BinsFromTheTransformationDictionary)
{
    const std::string cat = Field("name=\"c\" dataType=\"string\" optype=\"categorical\"");
    const std::string cont =
        Field("name=\"x\" dataType=\"double\" optype=\"continuous\"",
              "<Interval leftMargin=\"-1\" rightMargin=\"10\"/>"
              "<Value value=\"-9\" property=\"missing\"/>"
              "<Extension name=\"invalidRangeLower\" value=\"-99\"/>");
    auto discretize = [](const std::string& bins) {
        return "<DerivedField name=\"b\"><Discretize field=\"x\">" + bins +
               "</Discretize></DerivedField>";
    };
    auto bin = [](const char* label, const char* left, const char* right) {
        return std::string("<DiscretizeBin binValue=\"") + label + "\"><Interval leftMargin=\"" +
               left + "\" rightMargin=\"" + right + "\"/></DiscretizeBin>";
    };

    ZRVarList noDictionary;
    EXPECT_EQ(Fill(noDictionary, cat + cont, true).GetCode(), 110);
    EXPECT_EQ(noDictionary.Size(), 1u);
    ZRVarList noDiscretize;
    EXPECT_EQ(Fill(noDiscretize, cont, true, "<DerivedField name=\"d\"/>").GetCode(), 110);

    ZRVarList binned;
    ASSERT_TRUE(
        Fill(binned, cont, true, discretize(bin("lo", "0", "1") + bin("mid", "1", "2") +
                                            bin("hi", "2", "3")))
            .IsOK());
    const IZRVariable* variable = binned.GetVarAt(0);
    EXPECT_TRUE(variable->GetUseBins());
    EXPECT_EQ(variable->GetMinimum(), 0);
    EXPECT_EQ(variable->GetMaximum(), 3);
    EXPECT_EQ(variable->GetCutPoints(), (std::vector<double>{1, 2}));
    EXPECT_EQ(variable->GetEncoder()->GetBinLabels(),
              (std::vector<std::string>{"lo", "mid", "hi"}));
    EXPECT_EQ(variable->GetEncoder()->GetCallOrder(),
              (std::vector<std::string>{"SetBinLabels", "AddMissing", "SetMissingRange"}));
    EXPECT_EQ(variable->GetValueFormat(), 2);

    // Bin numbers as labels are not passed on.
    ZRVarList numbered;
    ASSERT_TRUE(Fill(numbered, cont, true,
                     discretize(bin("0", "0", "1") + bin("1", "1", "2") + bin("2", "2", "3")))
                    .IsOK());
    EXPECT_TRUE(numbered.GetVarAt(0)->GetEncoder()->GetBinLabels().empty());

    // One bin gives two cut points: the margins of the field's Interval count.
    ZRVarList oneBin;
    ASSERT_TRUE(Fill(oneBin, cont, true, discretize(bin("all", "0", "5"))).IsOK());
    EXPECT_FALSE(oneBin.GetVarAt(0)->GetUseBins());
    EXPECT_EQ(oneBin.GetVarAt(0)->GetMinimum(), -1);
    EXPECT_EQ(oneBin.GetVarAt(0)->GetMaximum(), 10);
    EXPECT_TRUE(oneBin.GetVarAt(0)->GetEncoder()->GetBinLabels().empty());
}

TEST(SettingsDerivedFields, IntervalsInsideExtensions)
{
    const std::string attributes = "name=\"d\" dataType=\"double\" optype=\"continuous\"";
    const struct {
        const char* children;
        long code;
        double minimum, maximum;
    } cases[] = {
        {"<Apply function=\"ln\"><FieldRef field=\"x\"/></Apply>", 0, kLowest, kHighest},
        {"<Extension><Interval leftMargin=\"1\" rightMargin=\"2\"/></Extension>", 0, 1, 2},
        {"<Interval leftMargin=\"1\" rightMargin=\"5\"/>"
         "<Extension><Interval rightMargin=\"7\"/></Extension>", 0, kLowest, 7},
        {"<Extension><Interval leftMargin=\"1\" rightMargin=\"5\"/></Extension>"
         "<Interval leftMargin=\"2\"/>", 0, 2, kHighest},
        // Only the first Interval of an Extension is read.
        {"<Extension><Interval leftMargin=\"1\" rightMargin=\"5\"/><Interval leftMargin=\"x\"/>"
         "</Extension>", 0, 1, 5},
        {"<Extension><Interval leftMargin=\"3\" rightMargin=\"2\"/></Extension>", 109, 0, 0},
    };
    for (const auto& c : cases) {
        ZRVarList list;
        EXPECT_EQ(FillDerived(list, Field(attributes, c.children, "DerivedField")).GetCode(),
                  c.code)
            << c.children;
        if (c.code != 0)
            continue;
        ASSERT_EQ(list.Size(), 1u);
        EXPECT_EQ(list.GetVarAt(0)->GetMinimum(), c.minimum) << c.children;
        EXPECT_EQ(list.GetVarAt(0)->GetMaximum(), c.maximum) << c.children;
    }
}

TEST(SettingsDerivedFields, DifferencesFromTheDataDictionary)
{
    ZRVarList none;
    EXPECT_TRUE(FillDerived(none, "").IsOK());  // no dictionary: OK, no bins asked
    EXPECT_TRUE(FillDerived(none, "<Other/>").IsOK());
    EXPECT_EQ(none.Size(), 0u);

    // A discretised field is never binned here, and a string field ignores
    // what would be faults in a numeric one.
    ZRVarList list;
    EXPECT_EQ(FillDerived(list,
                          Field("name=\"s\" dataType=\"string\" optype=\"categorical\"",
                                "<Interval leftMargin=\"x\"/><Extension><Interval leftMargin="
                                "\"5\" rightMargin=\"1\"/></Extension>",
                                "DerivedField") +
                              Field("name=\"c\" dataType=\"double\" optype=\"continuous\"",
                                    "<Discretize field=\"c\"><DiscretizeBin binValue=\"a\">"
                                    "<Interval leftMargin=\"0\" rightMargin=\"1\"/>"
                                    "</DiscretizeBin></Discretize>",
                                    "DerivedField") +
                              Field("name=\"bad\" dataType=\"timeSeconds\" optype=\"continuous\"",
                                    "", "DerivedField"))
                  .GetCode(),
              109);
    ASSERT_EQ(list.Size(), 2u);
    EXPECT_EQ(list.GetVarAt(0)->GetVarType(), 3);
    EXPECT_FALSE(list.GetVarAt(1)->GetUseBins());
    EXPECT_EQ(list.GetVarAt(1)->GetMinimum(), kLowest);
}

} // namespace
