// ZRPMMLParser: document statuses and the life of the held document.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRVarList.h>

using pmmltest::Doc;
using pmmltest::Parser;

namespace {

std::string Laughs()
{
    std::string text = "<!DOCTYPE PMML [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 8; ++i) {
        const std::string prev = "&a" + std::to_string(i - 1) + ";";
        text += "<!ENTITY a" + std::to_string(i) + " \"" + prev + prev + prev + prev + prev + prev +
                prev + prev + prev + prev + "\">";
    }
    return text + "]><PMML><DataDictionary><DataField name=\"&a7;\"/></DataDictionary></PMML>";
}

TEST(PMMLDocument, StatusOfEachKindOfDocument)
{
    const std::pair<std::string, long> cases[] = {
        {Doc("", "<TransformationDictionary/>"), 0},
        {"\xEF\xBB\xBF  <PMML><DataDictionary/></PMML>", 0},
        // An external DTD is not loaded, an external entity is not resolved.
        {"<!DOCTYPE PMML SYSTEM \"file:///nonexistent.dtd\"><PMML><DataDictionary/></PMML>", 0},
        {"<!DOCTYPE PMML [<!ENTITY x SYSTEM \"file:///etc/hostname\">]>" + Doc("&x;"), 104},
        {Laughs(), 104},
        {"", 104},
        {"<PMML><DataDictionary>", 104},
        {Doc("") + "<PMML/>", 104},
        {Doc("<X a=\"\xC3\x28\"/>"), 104},
        {"<?xml version=\"1.0\" encoding=\"no-such-encoding\"?>" + Doc(""), 104},
        {"<pmml><DataDictionary/></pmml>", 105},
        {"<ns1:PMML xmlns:ns1=\"http://www.dmg.org/PMML-4_2\"><ns1:DataDictionary/></ns1:PMML>",
         105},
        {"<PMML><Header><DataDictionary/></Header></PMML>", 106},
    };
    for (const auto& [text, code] : cases) {
        Parser parser;
        EXPECT_EQ(parser.Parse(text), code) << text;
        EXPECT_EQ(parser.GetStatus().GetCode(), code);
        EXPECT_EQ(parser.GetRootElement() != nullptr, code == 0) << text;
        EXPECT_EQ(parser.GetXercesMessage().empty(), code != 104) << text;
    }
    Parser parser;
    std::istringstream broken(Doc(""));
    broken.setstate(std::ios::badbit);
    EXPECT_EQ(parser.ParseToDOM(broken).GetCode(), 104);
}

TEST(PMMLDocument, QueriesFollowTheLastParse)
{
    auto* other = new Parser; // parsers live side by side, and end in any order
    Parser parser;
    ZRMetadata::ZRVarList list;
    ZRMetadata::ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), 107);
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 107);
    ASSERT_EQ(parser.Parse(Doc("", "<TreeModel/>")), 0);
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 112);
    const xercesc::DOMElement& model = *parser.Find(u"TreeModel");
    ASSERT_TRUE(parser.SetModelElmt(model));
    EXPECT_TRUE(parser.FillUniStats(stats, position).IsOK());
    EXPECT_EQ(position, nullptr);
    delete other;

    // A failed parse answers every query with its code and touches nothing.
    ASSERT_EQ(parser.Parse("<PMML/>"), 106);
    EXPECT_FALSE(parser.SetModelElmt(model));
    EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), 106);
    position = &model;
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 106);
    EXPECT_EQ(position, &model);
    EXPECT_EQ(list.Size(), 0u);

    // A good parse recovers, without the model chosen before.
    ASSERT_EQ(parser.Parse(Doc("", "<TreeModel/>")), 0);
    position = nullptr;
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 112);
}

} // namespace
