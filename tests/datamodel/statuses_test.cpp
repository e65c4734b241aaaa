// Status codes of the DataModel reader, the walk that stops at the first
// failing Field, and the life of the object.
#include "DataModelTestUtil.h"

#include <gtest/gtest.h>

#include <memory>

using ZRXPrsUtil::ZRDataModelParser;
using ZRMTD_NAMESPACE::ZRVarList;

namespace {

const std::string kGood = zrxtest::Model("<Field name='a' storage='real' measure='continuous'/>"
                                         "<Field name='b' storage='string' measure='nominal'/>");

} // namespace

TEST(DataModelStatus, FailedParsesAnswerEveryLaterFillWithTheirCode)
{
    const std::string canary = std::string(ZRX_TEST_DATA_DIR) + "/xml/canary.txt";
    struct Case { std::string text; long code; };
    for (const Case& c : {
             Case{"", 104}, Case{"<DataModel><Fields><Field name='a'", 104},
             Case{std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16), 104},
             Case{"<!DOCTYPE DataModel [<!ENTITY x SYSTEM 'file://" + canary + "'>]>" +
                      zrxtest::Model("<Field name='&x;' storage='string' measure='nominal'/>"), 104},
             Case{"<PMML><Fields/></PMML>", 105}, Case{"<datamodel><Fields/></datamodel>", 105},
             Case{"<dm:DataModel xmlns:dm='urn:x'><Fields/></dm:DataModel>", 105},
             Case{"<DataModel><fields/><Other><Fields/></Other></DataModel>", 113}}) {
        ZRDataModelParser parser;
        EXPECT_EQ(parser.ParseToDOM(c.text).GetCode(), c.code) << c.text;
        EXPECT_EQ(parser.GetStatus().GetCode(), c.code);
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), c.code) << c.text;
        EXPECT_EQ(list.Size(), 0u);
    }
    // A DOCTYPE by itself is fine: the external DTD is not loaded.
    ZRVarList list;
    EXPECT_EQ(zrxtest::ParseAndFill("<!DOCTYPE DataModel SYSTEM 'no.dtd'>" + kGood, list), 0);
    EXPECT_EQ(list.Size(), 2u);
}

TEST(DataModelStatus, FillBeforeParseIs107AndAGoodParseClearsAFailure)
{
    ZRDataModelParser parser;
    EXPECT_TRUE(parser.GetStatus().IsOK());
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), 107);
    EXPECT_EQ(parser.ParseToDOM("<Wrong/>").GetCode(), 105);
    EXPECT_TRUE(parser.ParseToDOM(kGood).IsOK());
    EXPECT_TRUE(parser.FillVarList(list, false, false, 0).IsOK());
    EXPECT_EQ(list.Size(), 2u);
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

TEST(DataModelStatus, TheWalkStopsAtTheFirstFailingField)
{
    const std::string before = "<Field name='f1' storage='real' measure='continuous'/><Other/>"
                               "<Field name='f2' storage='string' measure='nominal'/>";
    const std::string after = "<Field name='f4' storage='real' measure='continuous'/>";
    struct Case { const char* third; long code; };
    for (const Case& c : {Case{"<Field storage='real' measure='continuous'/>", 108},
                          Case{"<Field name='f3' measure='continuous'/>", 108},
                          Case{"<Field name='f3' storage='real'/>", 108},
                          Case{"<Field name='f3' storage='Real' measure='continuous'/>", 109},
                          Case{"<Field name='f3' storage='bool'/>", 109},
                          Case{"<Field name='f1' storage='integer' measure='nominal'/>", 111}}) {
        ZRVarList list;
        EXPECT_EQ(zrxtest::ParseAndFill(zrxtest::Model(before + c.third + after), list), c.code)
            << c.third;
        ASSERT_EQ(list.Size(), 2u) << c.third;
        EXPECT_EQ(list.GetVarAt(1)->GetName(), "f2");
    }
}

TEST(DataModelStatus, ObjectsComeAndGoAndLiveSideBySide)
{
    // Each object starts and stops the XML library once, in any order.
    for (int round = 0; round < 3; ++round) {
        auto first = std::make_unique<ZRDataModelParser>();
        auto second = std::make_unique<ZRDataModelParser>();
        EXPECT_TRUE(first->ParseToDOM(kGood).IsOK());
        first.reset();
        EXPECT_TRUE(second->ParseToDOM(kGood).IsOK());
        ZRVarList list;
        EXPECT_TRUE(second->FillVarList(list, false, false, 0).IsOK());
        EXPECT_EQ(list.GetVarAt(1)->GetName(), "b");
    }
}
