// The DataModel reader: status codes, the walk that stops at the first
// failing Field, the life of the object, and how each Field becomes a
// variable (kind, storage code, role, bins, values with their labels, ranges).
#include "../pmml/PMMLTestSupport.h"
#include "ZRXTestDom.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrcommonr/ZRMV.h>

#include <limits>
#include <memory>

using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;
using ZRXPrsUtil::ZRDataModelParser;

namespace {

std::string Model(const std::string& fields)
{
    return "<DataModel><Fields>" + fields + "</Fields></DataModel>";
}

// Parses `text` and fills `list`: the code of the first failing step, or 0.
long ParseAndFill(const std::string& text, ZRVarList& list, bool alternateInputRole = false,
                  bool useBins = false, int binCount = 0)
{
    ZRDataModelParser parser;
    const long parsed = parser.ParseToDOM(text).GetCode();
    return parsed ? parsed
                  : parser.FillVarList(list, alternateInputRole, useBins, binCount).GetCode();
}

const double kLowest = std::numeric_limits<double>::lowest();
const std::string kGood = Model("<Field name='a' storage='real' measure='continuous'/>"
                                "<Field name='b' storage='string' measure='nominal'/>");

} // namespace

// Documents that are not well-formed give 104 in the XML layer's tests
// (Parsing.EveryFailedParseGives104WithTheXmlLibrarysMessage, through the
// same document reader); the entity here names the file absolutely, so a
// reader that resolved it would parse.
TEST(DataModelStatus, FailedParsesAnswerEveryLaterFillWithTheirCode)
{
    const std::pair<std::string, long> cases[] = {
        {"<!DOCTYPE DataModel [<!ENTITY x SYSTEM 'file://" ZRX_TEST_DATA_DIR "/xml/canary.txt'>]>" +
             Model("<Field name='&x;' storage='string' measure='nominal'/>"),
         104},
        {"<PMML><Fields/></PMML>", 105},
        {"<datamodel><Fields/></datamodel>", 105},
        {"<dm:DataModel xmlns:dm='urn:x'><Fields/></dm:DataModel>", 105},
        {"<DataModel><fields/><Other><Fields/></Other></DataModel>", 113}};
    for (const auto& [text, code] : cases) {
        ZRDataModelParser parser;
        EXPECT_EQ(parser.ParseToDOM(text).GetCode(), code) << text;
        EXPECT_EQ(parser.GetStatus().GetCode(), code);
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), code) << text;
        EXPECT_EQ(list.Size(), 0u);
    }
}

// Objects start and stop the XML library each, in any order.
TEST(DataModelStatus, FillBeforeParseIs107AndAGoodParseClearsAFailure)
{
    auto other = std::make_unique<ZRDataModelParser>();
    ZRDataModelParser parser;
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), 107);
    EXPECT_EQ(parser.ParseToDOM("<Wrong/>").GetCode(), 105);
    EXPECT_TRUE(other->ParseToDOM(kGood).IsOK());
    other.reset();
    EXPECT_TRUE(parser.ParseToDOM(kGood).IsOK());
    EXPECT_TRUE(parser.FillVarList(list, false, false, 0).IsOK());
    EXPECT_EQ(list.GetVarAt(1)->GetName(), "b");
    // Filling the same list again: the first name is taken (111), nothing is
    // removed, and the held status stays OK.
    EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), 111);
    EXPECT_EQ(list.Size(), 2u);
    EXPECT_TRUE(parser.GetStatus().IsOK());
    // Only the first Fields counts; an empty one adds nothing.
    EXPECT_TRUE(parser.ParseToDOM("<DataModel><Fields/>" + kGood.substr(11)).IsOK());
    ZRVarList none;
    EXPECT_TRUE(parser.FillVarList(none, false, false, 0).IsOK());
    EXPECT_EQ(none.Size(), 0u);
}

TEST(DataModelVariables, StorageMeasureAndRoleGiveKindCodeAndRole)
{
    struct Case {
        const char* attributes;
        int type;
        int code;
        int role;
        int altRole;
    };
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
        ASSERT_EQ(ParseAndFill(Model(fields), list, alternate), 0);
        ASSERT_EQ(list.Size(), 8u);
        for (int i = 0; i < 8; ++i) {
            const IZRVariable* v = list.GetVarAt(i);
            EXPECT_EQ(v->GetVarType(), cases[i].type) << cases[i].attributes;
            EXPECT_EQ(v->GetValueFormat(), cases[i].code) << cases[i].attributes;
            EXPECT_EQ(v->GetRole(), alternate ? cases[i].altRole : cases[i].role)
                << cases[i].attributes;
            EXPECT_FALSE(v->IsWeight());
        }
        // Text-valued: the Range is not read.
        EXPECT_EQ(list.GetVarAt(2)->GetMinimum(), kLowest);
        EXPECT_EQ(list.GetVarAt(0)->GetMinimum(), 1);
    }
}

TEST(DataModelVariables, WeightAndBins)
{
    const std::string doc = Model("<Field name='x' storage='real' measure='continuous'/>"
                                  "<Field name='w' displayLabel='Weight' storage='real' "
                                  "measure='continuous' role='freqWeight'>"
                                  "<Range minValue='1'/></Field>");
    // bins asked for, bin count given; bins used, bin count kept
    const std::tuple<bool, int, bool, int> cases[] = {{true, 10, true, 10},
                                                      {true, 2, true, 2},
                                                      {true, 1, false, -1},
                                                      {true, -5, false, -1},
                                                      {false, 10, false, -1}};
    for (const auto& [useBins, count, used, kept] : cases) {
        ZRVarList list;
        ASSERT_EQ(ParseAndFill(doc, list, false, useBins, count), 0);
        EXPECT_EQ(std::make_pair(list.GetVarAt(0)->GetUseBins(), list.GetVarAt(0)->GetBinCount()),
                  std::make_pair(used, kept))
            << count;
        const IZRVariable* w = list.GetVarAt(1);
        EXPECT_TRUE(w->IsWeight());
        EXPECT_EQ(w->GetWeightRounding(), IZRVariable::eRoundNearest);
        EXPECT_EQ(w->GetLabel(), "Weight");
        EXPECT_FALSE(w->GetUseBins()); // neither bins nor range reach it
        EXPECT_NE(w->GetMinimum(), 1.0);
    }
}

// The Fields of data/datamodel/fields.xml: values keep their labels only one
// label per value (b: n, m are 2 labels for 1 value); Ranges override bound by
// bound; a continuous field has no value list.
TEST(DataModelVariables, ValuesAndRanges)
{
    ZRVarList list;
    ASSERT_EQ(ParseAndFill(zrxtest::ReadFile(ZRX_TEST_DATA_DIR "/datamodel/fields.xml"), list), 0);
    std::vector<std::string> lines;
    for (int i = 0; i < static_cast<int>(list.Size()); ++i)
        lines.push_back(pmmltest::Line(list, i));
    EXPECT_EQ(lines, (std::vector<std::string>{"a 2;1|3;;;; 1", "b 2;M;;;; 2",
                                               "r\xC3\xA9gion 3;NaN| x ;n|s;;; 3", " 3;a|b;;;; 3",
                                               "ra 1;;;;; 2 lo..10", "rb 1;;;;; 2 -5..1000",
                                               "rc 1;;;;; 1 M..1", "rd 1;;;;; 4 lo..hi"}));
    EXPECT_EQ(list.GetVarAt(2)->GetLabel(), "& pays");
    EXPECT_EQ(list.GetVarAt(7)->GetNValues(), 0);
}
