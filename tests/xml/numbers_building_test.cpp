// The number rules and the building helpers.
#include "ZRXTestDom.h"

#include <zrcommonr/ZRMV.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>

#include <gtest/gtest.h>

#include <climits>

using namespace ZRXPrsUtil;

namespace {

class Numbers : public ::testing::Test {
protected:
    zrxtest::XercesSession session;
};

std::vector<XMLCh> X(const char* text) { return ToUTF16(text); }

} // namespace

TEST_F(Numbers, ParseIntegerRefusesWhatIsNoIntInsteadOfWrapping)
{
    struct Case { const char* text; bool ok; int value; };
    const Case cases[] = {
        {"42", true, 42}, {"-17", true, -17}, {"+5", true, 5}, {"007", true, 7},
        {"-0", true, 0}, {" 12 ", true, 12},
        {"2147483647", true, INT_MAX}, {"-2147483648", true, INT_MIN},
        {"2147483648", false, 0}, {"-2147483649", false, 0},
        {"12345678901", false, 0}, {"99999999999999999999999", false, 0},
        {"00000000002147483647", true, INT_MAX},
        {"", false, 0}, {"1.0", false, 0}, {"1e3", false, 0}, {"abc", false, 0}, {"--1", false, 0},
    };
    for (const Case& c : cases) {
        int value = -99;
        EXPECT_EQ(ParseInteger(X(c.text).data(), value), c.ok) << c.text;
        EXPECT_EQ(value, c.ok ? c.value : -99) << c.text;
    }
    int value = -99;
    EXPECT_FALSE(ParseInteger(nullptr, value));
}

TEST_F(Numbers, ParseDoubleFollowsTheSpecialValueRule)
{
    struct Case { const char* text; bool ok; double value; };
    const Case cases[] = {
        {"1.5", true, 1.5}, {"-2E2", true, -200}, {".5", true, 0.5}, {"0", true, 0},
        {"NaN", true, ZRMV::gMissingValue},
        {"1.7976931348623157e308", true, 1.7976931348623157e308},
        {"INF", false, 0}, {"-INF", false, 0}, {"1e999", false, 0}, {"-1e999", false, 0},
        {"nan", false, 0}, {"inf", false, 0}, {"", false, 0}, {"1,5", false, 0},
        {"0x10", false, 0}, {"1.5x", false, 0},
    };
    for (const Case& c : cases) {
        double value = 8;
        EXPECT_EQ(ParseDouble(X(c.text).data(), value), c.ok) << c.text;
        EXPECT_EQ(value, c.ok ? c.value : 8) << c.text;
    }
}

TEST_F(Numbers, ParseDoublesListEmptiesOnTheFirstBadToken)
{
    std::vector<double> values = {5};
    EXPECT_TRUE(ParseDoublesList(X(" 1\t2.5\n NaN  -3 ").data(), values));
    EXPECT_EQ(values, (std::vector<double>{1, 2.5, ZRMV::gMissingValue, -3}));
    EXPECT_FALSE(ParseDoublesList(X("1 2 INF 4").data(), values));
    EXPECT_TRUE(values.empty());
    values = {5};
    EXPECT_TRUE(ParseDoublesList(X("   ").data(), values));
    EXPECT_TRUE(values.empty());
}

TEST_F(Numbers, AssembleDoublesListWantsOneTextChild)
{
    zrxtest::ParsedDoc doc("<r><blank>  </blank><nums>1 NaN 3</nums><bad>1 2 x</bad>"
                           "<none/><mixed>1 2<!--c--></mixed><cdata><![CDATA[1 2]]></cdata>"
                           "<elem><a/></elem></r>");
    ASSERT_TRUE(doc.Status().IsOK());
    const xercesc::DOMElement& r = doc.Root();
    std::vector<double> values = {9};
    EXPECT_TRUE(AssembleDoublesList(*GetFirstChildElmt(r, "blank"), values));
    EXPECT_TRUE(values.empty());
    EXPECT_TRUE(AssembleDoublesList(*GetFirstChildElmt(r, "nums"), values));
    EXPECT_EQ(values, (std::vector<double>{1, ZRMV::gMissingValue, 3}));
    EXPECT_FALSE(AssembleDoublesList(*GetFirstChildElmt(r, "bad"), values));
    EXPECT_TRUE(values.empty());
    values = {9};
    EXPECT_TRUE(AssembleDoublesList(*GetFirstChildElmt(r, "none"), values));
    EXPECT_TRUE(values.empty());
    for (const char* tag : {"mixed", "cdata", "elem"}) {
        values = {9};
        EXPECT_FALSE(AssembleDoublesList(*GetFirstChildElmt(r, tag), values)) << tag;
        EXPECT_EQ(values, std::vector<double>{9}) << tag;
    }
}

TEST_F(Numbers, BuildingHelpersReportDomFailuresByTheirResult)
{
    zrxtest::ParsedDoc doc("<PMML><Header/></PMML>");
    zrxtest::ParsedDoc other("<Other/>");
    ASSERT_TRUE(doc.Status().IsOK());
    xercesc::DOMDocument& d = *doc.Doc();
    xercesc::DOMElement& root = *d.getDocumentElement();
    xercesc::DOMElement* header = const_cast<xercesc::DOMElement*>(GetFirstChildElmt(root, "Header"));

    EXPECT_EQ(CreateElement(d, "1bad"), nullptr);
    EXPECT_EQ(CreateElement(d, ""), nullptr);
    EXPECT_EQ(CreateElement(d, "\xFF"), nullptr);
    xercesc::DOMElement* data = CreateElement(d, "DataDictionary");
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->getParentNode(), nullptr);
    EXPECT_TRUE(SetAttribute(*data, "numberOfFields", 12.0));
    EXPECT_TRUE(SetAttribute(*data, "weight", 0.1));
    EXPECT_TRUE(SetAttribute(*data, "label", "\xC3\xA9t\xC3\xA9"));
    EXPECT_FALSE(SetAttribute(*data, "bad name", "x"));
    EXPECT_EQ(ToUTF8(GetAttribute(*data, "numberOfFields")), "12");
    EXPECT_EQ(ToUTF8(GetAttribute(*data, "weight")), "0.1");
    EXPECT_EQ(ToUTF8(GetAttribute(*data, "label")), "\xC3\xA9t\xC3\xA9");

    EXPECT_TRUE(InsertElement(root, data, header));
    EXPECT_EQ(GetFirstChildElmt(root, nullptr), data);
    EXPECT_TRUE(InsertElement(root, CreateElement(d, "MiningModel"), nullptr));
    EXPECT_EQ(TagNameEquals(*static_cast<xercesc::DOMElement*>(root.getLastChild()), "MiningModel"),
              true);
    // An element of another document, and a node that is not a child.
    xercesc::DOMElement* foreign = CreateElement(*other.Doc(), "Foreign");
    EXPECT_FALSE(InsertElement(root, foreign, nullptr));
    EXPECT_FALSE(ReplaceElement(root, CreateElement(d, "X"), CreateElement(d, "NotAChild")));
    EXPECT_FALSE(InsertElement(*data, &root, nullptr));  // an ancestor
    EXPECT_FALSE(InsertElement(root, nullptr, nullptr));

    xercesc::DOMElement* ext = CreateExtension(d, "splitInfo");
    ASSERT_NE(ext, nullptr);
    EXPECT_TRUE(TagNameEquals(*ext, "Extension"));
    EXPECT_TRUE(IsVendorExtension(*ext, "splitInfo"));
    EXPECT_TRUE(ReplaceElement(root, ext, header));
    EXPECT_EQ(GetFirstChildElmt(root, "Header"), nullptr);
    EXPECT_EQ(GetFirstChildExtension(root, "splitInfo"), ext);
    header->release();
}
