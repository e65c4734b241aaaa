// ZRPMMLParser: document statuses and the life of the held document.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRVarList.h>

using pmmltest::Doc;
using pmmltest::Parser;

namespace {

const std::string kLaughs =
    "<?xml version=\"1.0\"?><!DOCTYPE PMML [<!ENTITY a \"aaaaaaaaaaaaaaaa\">"
    "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
    "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">"
    "<!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\">"
    "<!ENTITY e \"&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;\">"
    "<!ENTITY f \"&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;\">]>"
    "<PMML><DataDictionary><DataField name=\"&f;\" dataType=\"string\" optype=\"categorical\"/>"
    "</DataDictionary></PMML>";

TEST(PMMLDocument, StatusOfEachKindOfDocument) {
    struct Case {
        std::string text;
        long code;
    } cases[] = {
        {Doc(""), 0},
        {Doc("", "<TransformationDictionary/>"), 0},
        {"\xEF\xBB\xBF  <PMML><DataDictionary/></PMML>", 0},
        {"", 104},
        {"<PMML><DataDictionary>", 104},
        {"<PMML><DataDictionary/></PMML><PMML/>", 104},
        {"<PMML><DataDictionary><DataField name=\"\xC3\x28\"/></DataDictionary></PMML>", 104},
        // An external DTD is not loaded; an external entity is not resolved.
        {"<!DOCTYPE PMML SYSTEM \"file:///nonexistent.dtd\"><PMML><DataDictionary/></PMML>", 0},
        {"<!DOCTYPE PMML [<!ENTITY x SYSTEM \"file:///etc/hostname\">]>"
         "<PMML><DataDictionary><DataField name=\"&x;\"/></DataDictionary></PMML>", 104},
        {kLaughs, 104},
        {"<?xml version=\"1.0\" encoding=\"no-such-encoding\"?><PMML><DataDictionary/></PMML>", 104},
        {"<DataModel><DataDictionary/></DataModel>", 105},
        {"<pmml><DataDictionary/></pmml>", 105},
        {"<ns1:PMML xmlns:ns1=\"http://www.dmg.org/PMML-4_2\"><ns1:DataDictionary/></ns1:PMML>",
         105},
        {"<PMML><Header/></PMML>", 106},
        {"<PMML><Header><DataDictionary/></Header></PMML>", 106},
    };
    for (const Case& c : cases) {
        Parser parser;
        EXPECT_EQ(parser.Parse(c.text), c.code) << c.text;
        EXPECT_EQ(parser.GetStatus().GetCode(), c.code);
        EXPECT_EQ(parser.GetRootElement() != nullptr, c.code == 0) << c.text;
        if (c.code != 104) {
            EXPECT_EQ(parser.GetXercesMessage(), "") << c.text;
        }
    }
    Parser parser;
    std::istringstream broken(Doc(""));
    broken.setstate(std::ios::badbit);
    EXPECT_EQ(parser.ParseToDOM(broken).GetCode(), 104);
}

TEST(PMMLDocument, FailedParseAnswersEveryQueryWithItsCode) {
    Parser parser;
    ZRMetadata::ZRVarList list;
    ZRMetadata::ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), 107);
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 107);

    ASSERT_EQ(parser.Parse(Doc("", "<TreeModel/>")), 0);
    const xercesc::DOMElement& model = *parser.Find(u"TreeModel");
    ASSERT_TRUE(parser.SetModelElmt(model));
    ASSERT_EQ(parser.Parse("<PMML/>"), 106);
    EXPECT_FALSE(parser.SetModelElmt(model));
    EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), 106);
    position = &model;
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 106);
    EXPECT_EQ(position, &model);
    EXPECT_EQ(parser.GetStatus().GetCode(), 106);
    EXPECT_EQ(list.Size(), 0u);

    // A good parse after a failed one recovers, without the old model.
    ASSERT_EQ(parser.Parse(Doc("", "<TreeModel/>")), 0);
    position = nullptr;
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 112);
    EXPECT_TRUE(parser.SetModelElmt(*parser.Find(u"TreeModel")));
    EXPECT_TRUE(parser.FillUniStats(stats, position).IsOK());
    EXPECT_EQ(position, nullptr);
    ASSERT_EQ(parser.Parse(Doc("")), 0);
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 112);
}

TEST(PMMLDocument, ManyParsersLiveSideBySide) {
    auto* first = new Parser;
    {
        Parser second;
        EXPECT_EQ(second.Parse(Doc("")), 0);
    }
    EXPECT_EQ(first->Parse(Doc("")), 0);
    delete first;
    Parser third;
    EXPECT_EQ(third.Parse(Doc("")), 0);
}

} // namespace
