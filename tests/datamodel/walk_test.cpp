// The walk over Field elements stops at the first failure and keeps what was
// added before it.
#include "DataModelTestUtil.h"

#include <zrcommonr/ZRVarList.h>

#include <gtest/gtest.h>

using ZRXPrsUtil::ZRDataModelParser;
using ZRMTD_NAMESPACE::ZRVarList;

TEST(DataModelWalk, FirstFailingFieldStopsTheWalk)
{
    const std::string good1 = "<Field name='f1' storage='real' measure='continuous'/>";
    const std::string good2 = "<Field name='f2' storage='string' measure='nominal'/>";
    const std::string good4 = "<Field name='f4' storage='real' measure='continuous'/>";
    struct Case { std::string third; long code; };
    const Case cases[] = {
        {"<Field storage='real' measure='continuous'/>", 108},
        {"<Field name='f3' measure='continuous'/>", 108},
        {"<Field name='f3' storage='real'/>", 108},
        {"<Field name='f3' storage='double' measure='continuous'/>", 109},
        {"<Field name='f3' storage='' measure='continuous'/>", 109},
        {"<Field name='f3' storage='Real' measure='continuous'/>", 109},
        // Refused by the list: a name already there.
        {"<Field name='f1' storage='integer' measure='nominal'/>", 111},
        // Unknown storage is reported before a missing measure.
        {"<Field name='f3' storage='bool'/>", 109},
    };
    for (const Case& c : cases) {
        ZRVarList list;
        EXPECT_EQ(zrxtest::ParseAndFill(
                      zrxtest::Model(good1 + "<Other/>" + good2 + c.third + good4), list),
                  c.code)
            << c.third;
        ASSERT_EQ(list.Size(), 2u) << c.third;
        EXPECT_EQ(list.GetVarAt(1)->GetName(), "f2");
        EXPECT_EQ(list.FindVar("f4"), -1);
    }
}

TEST(DataModelWalk, FillAppendsAndNeverEmptiesTheList)
{
    ZRDataModelParser parser;
    ASSERT_TRUE(parser.ParseToDOM(zrxtest::Model(
                    "<Field name='a' storage='real' measure='continuous'/>"
                    "<Field name='b' storage='real' measure='continuous'/>")).IsOK());
    ZRVarList list;
    ASSERT_EQ(list.AddContVar("earlier", "", ZRMTD_NAMESPACE::IZRVariable::eRoleNone), 0);
    EXPECT_TRUE(parser.FillVarList(list, false, false, 0).IsOK());
    EXPECT_EQ(list.Size(), 3u);
    // Filling the same list again: the first name is taken, nothing changes.
    EXPECT_EQ(parser.FillVarList(list, false, false, 0).GetCode(), 111);
    EXPECT_EQ(list.Size(), 3u);
    EXPECT_TRUE(parser.GetStatus().IsOK());
    // A fresh list gets the same variables again.
    ZRVarList other;
    EXPECT_TRUE(parser.FillVarList(other, true, true, 4).IsOK());
    EXPECT_EQ(other.Size(), 2u);
}
