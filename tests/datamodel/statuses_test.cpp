// Status codes of the DataModel reader, bad and hostile documents, and the
// life of the object (several side by side, parse after parse).
#include "DataModelTestUtil.h"
#include "ZRXTestDom.h"

#include <gtest/gtest.h>

#include <memory>

using ZRXPrsUtil::ZRDataModelParser;
using ZRMTD_NAMESPACE::ZRVarList;

namespace {

const std::string kGood = zrxtest::Model(
    "<Field name='a' storage='real' measure='continuous'/>"
    "<Field name='b' storage='string' measure='nominal'/>");

} // namespace

TEST(DataModelStatus, FailedParsesAnswerEveryLaterFillWithTheirCode)
{
    struct Case { std::string text; long code; };
    const Case cases[] = {
        {"", 104},
        {"<DataModel><Fields><Field name='a'", 104},                // truncated
        {std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16), 104},   // binary
        {"<DataModel><Fields/></DataModel><DataModel/>", 104},
        {"<PMML><Fields/></PMML>", 105},
        {"<datamodel><Fields/></datamodel>", 105},
        {"<dm:DataModel xmlns:dm='urn:x'><Fields/></dm:DataModel>", 105},
        {"<DataModel><Field name='a' storage='real' measure='continuous'/></DataModel>", 113},
        {"<DataModel><fields/></DataModel>", 113},
        {"<DataModel><Other><Fields/></Other></DataModel>", 113},
    };
    for (const Case& c : cases) {
        ZRDataModelParser parser;
        EXPECT_EQ(parser.ParseToDOM(c.text).GetCode(), c.code) << c.text;
        EXPECT_EQ(parser.GetStatus().GetCode(), c.code);
        EXPECT_FALSE(parser.GetStatus().GetFlag());
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), c.code) << c.text;
        EXPECT_EQ(list.Size(), 0u);
    }
}

TEST(DataModelStatus, FillBeforeParseIs107AndAGoodParseClearsAnEarlierFailure)
{
    ZRDataModelParser parser;
    EXPECT_TRUE(parser.GetStatus().IsOK());
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), 107);

    EXPECT_EQ(parser.ParseToDOM("<Wrong/>").GetCode(), 105);
    EXPECT_TRUE(parser.ParseToDOM(kGood).IsOK());
    EXPECT_TRUE(parser.FillVarList(list, false, false, 0).IsOK());
    EXPECT_EQ(list.Size(), 2u);
    // A failed parse drops the document it replaced.
    EXPECT_EQ(parser.ParseToDOM("<DataModel>").GetCode(), 104);
    ZRVarList second;
    EXPECT_EQ(parser.FillVarList(second, false, false, 0).GetCode(), 104);
    EXPECT_EQ(second.Size(), 0u);
}

TEST(DataModelStatus, EmptyFieldsAddNothing)
{
    ZRVarList list;
    EXPECT_EQ(zrxtest::ParseAndFill(zrxtest::Model(""), list), 0);
    EXPECT_EQ(zrxtest::ParseAndFill("<DataModel><Fields><!-- none --><Other/></Fields>"
                                    "<Fields><Field name='x' storage='real' measure='continuous'/>"
                                    "</Fields></DataModel>", list), 0);
    EXPECT_EQ(list.Size(), 0u);  // only the first Fields counts
}

TEST(DataModelStatus, HostileDocumentsFailWithoutReadingFiles)
{
    const std::string canary = std::string(ZRX_TEST_DATA_DIR) + "/xml/canary.txt";
    const std::string external =
        "<!DOCTYPE DataModel [<!ENTITY x SYSTEM 'file://" + canary + "'>]>"
        "<DataModel><Fields><Field name='&x;' storage='string' measure='nominal'/></Fields>"
        "</DataModel>";
    const std::string attributeEntity =
        "<!DOCTYPE DataModel [<!ENTITY x SYSTEM 'file://" + canary + "'>]>"
        "<DataModel><Fields>&x;</Fields></DataModel>";
    std::string laughs = "<!DOCTYPE DataModel [<!ENTITY l0 'ha'>";
    for (int i = 1; i <= 9; ++i) {
        laughs += "<!ENTITY l" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k)
            laughs += "&l" + std::to_string(i - 1) + ";";
        laughs += "'>";
    }
    laughs += "]><DataModel><Fields><Field name='a' displayLabel='&l9;' storage='string'"
              " measure='nominal'/></Fields></DataModel>";
    for (const std::string& text : {external, attributeEntity, laughs}) {
        ZRDataModelParser parser;
        EXPECT_EQ(parser.ParseToDOM(text).GetCode(), 104);
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), 104);
        EXPECT_EQ(list.Size(), 0u);
    }
    // A DOCTYPE by itself is fine: the external DTD is not loaded.
    ZRVarList list;
    EXPECT_EQ(zrxtest::ParseAndFill("<!DOCTYPE DataModel SYSTEM 'no-such.dtd'>" + kGood, list), 0);
    EXPECT_EQ(list.Size(), 2u);
}

TEST(DataModelStatus, ObjectsComeAndGoAndLiveSideBySide)
{
    // Each object starts and stops the XML library once; the count stays in
    // balance whatever the order of destruction.
    for (int round = 0; round < 3; ++round) {
        auto first = std::make_unique<ZRDataModelParser>();
        auto second = std::make_unique<ZRDataModelParser>();
        EXPECT_TRUE(first->ParseToDOM(kGood).IsOK());
        first.reset();
        EXPECT_TRUE(second->ParseToDOM(kGood).IsOK());
        ZRVarList list;
        EXPECT_TRUE(second->FillVarList(list, false, false, 0).IsOK());
        ASSERT_EQ(list.Size(), 2u);
        EXPECT_EQ(list.GetVarAt(1)->GetName(), "b");
    }
    // The helpers work again after the last object is gone and a new one comes.
    ZRDataModelParser again;
    EXPECT_TRUE(again.ParseToDOM(kGood).IsOK());
}
