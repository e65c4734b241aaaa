// Attribute readers with their -1/0/1 convention, tag tests, navigation by tag
// and by name list, the vendor Extension finders and name lists.
#include "ZRXTestDom.h"

#include <zrcommonr/ZRMV.h>

#include <gtest/gtest.h>

using namespace ZRXPrsUtil;

namespace {

class DomHelpers : public ::testing::Test {
protected:
    zrxtest::XercesSession session;
};

std::string TagOf(const xercesc::DOMElement* element)
{
    return element ? ToUTF8(element->getTagName()) : "(null)";
}

} // namespace

TEST_F(DomHelpers, GetAttributeTellsAbsentFromEmpty)
{
    zrxtest::ParsedDoc doc("<r a='' b='x\xC3\xA9'><!--c-->text</r>");
    ASSERT_TRUE(doc.Status().IsOK());
    const xercesc::DOMElement& root = doc.Root();
    ASSERT_NE(GetAttribute(root, "a"), nullptr);
    EXPECT_EQ(*GetAttribute(root, "a"), 0);
    EXPECT_EQ(ToUTF8(GetAttribute(root, "b")), "x\xC3\xA9");
    EXPECT_EQ(GetAttribute(root, "c"), nullptr);
    EXPECT_EQ(GetAttribute(root, "A"), nullptr);
    // Through the node overload: an element answers, a comment or text does not.
    EXPECT_EQ(ToUTF8(GetAttribute(static_cast<const xercesc::DOMNode&>(root), "b")), "x\xC3\xA9");
    EXPECT_EQ(GetAttribute(*root.getFirstChild(), "b"), nullptr);
    EXPECT_EQ(GetAttribute(*root.getLastChild(), "b"), nullptr);
}

TEST_F(DomHelpers, GetIntAttributeAppliesTheSignRule)
{
    zrxtest::ParsedDoc doc("<r neg='-3' zero='0' pos=' 7 ' big='12345678901' min='-2147483648'"
                           " over='2147483648' bad='abc' dec='1.5' empty=''/>");
    const xercesc::DOMElement& r = doc.Root();
    struct Case { const char* name; int sign; int result; int value; };
    const Case cases[] = {
        {"neg", 0, 1, -3},  {"neg", -1, 0, -3}, {"neg", 1, 1, -3},
        {"zero", 0, 0, 0},  {"zero", 1, 1, 0},  {"pos", 1, 0, 7},
        {"min", -1, 0, INT_MIN},
        // Untouched value (99) for absence and for text that is no int.
        {"absent", -1, -1, 99}, {"bad", -1, 1, 99}, {"dec", -1, 1, 99},
        {"big", -1, 1, 99}, {"over", -1, 1, 99}, {"empty", -1, 1, 99},
    };
    for (const Case& c : cases) {
        int value = 99;
        EXPECT_EQ(GetIntAttribute(r, c.name, c.sign, value), c.result) << c.name << c.sign;
        EXPECT_EQ(value, c.value) << c.name << c.sign;
    }
}

TEST_F(DomHelpers, GetDoubleAttributeMapsNaNAndRefusesInfinities)
{
    zrxtest::ParsedDoc doc("<r x='2.5e3' nan='NaN' inf='INF' ninf='-INF' bad='1,5' huge='1e400'/>");
    const xercesc::DOMElement& r = doc.Root();
    double value = 4;
    EXPECT_EQ(GetDoubleAttribute(r, "x", value), 0);
    EXPECT_EQ(value, 2500.0);
    EXPECT_EQ(GetDoubleAttribute(r, "nan", value), 0);
    EXPECT_EQ(value, ZRMV::gMissingValue);
    value = 4;
    for (const char* name : {"inf", "ninf", "bad", "huge"}) {
        EXPECT_EQ(GetDoubleAttribute(r, name, value), 1) << name;
        EXPECT_EQ(value, 4) << name;
    }
    EXPECT_EQ(GetDoubleAttribute(r, "none", value), -1);
    EXPECT_EQ(value, 4);
}

TEST_F(DomHelpers, TagsAreComparedAsWrittenPrefixIncluded)
{
    zrxtest::ParsedDoc doc("<p:Model xmlns:p='urn:x'><Model/>text</p:Model>");
    const xercesc::DOMElement& root = doc.Root();
    EXPECT_FALSE(TagNameEquals(root, "Model"));
    EXPECT_TRUE(TagNameEquals(root, "p:Model"));
    EXPECT_EQ(AsElement(root, nullptr), &root);
    EXPECT_EQ(AsElement(root, "Model"), nullptr);
    EXPECT_NE(AsElement(*root.getFirstChild(), "Model"), nullptr);
    EXPECT_EQ(AsElement(*root.getLastChild(), nullptr), nullptr);
}

TEST_F(DomHelpers, NavigationSkipsNonElementsAndMatchesTags)
{
    zrxtest::ParsedDoc doc("<r> <!--c--> <a/> text <b id='1'/><?pi x?><b id='2'/><c/></r>");
    const xercesc::DOMElement& r = doc.Root();
    const xercesc::DOMElement* a = GetFirstChildElmt(r, nullptr);
    EXPECT_EQ(TagOf(a), "a");
    const xercesc::DOMElement* b1 = GetFirstChildElmt(r, "b");
    EXPECT_EQ(ToUTF8(GetAttribute(*b1, "id")), "1");
    const xercesc::DOMElement* b2 = GetNextSiblingElmt(*b1, "b");
    EXPECT_EQ(ToUTF8(GetAttribute(*b2, "id")), "2");
    EXPECT_EQ(GetNextSiblingElmt(*b2, "b"), nullptr);
    EXPECT_EQ(TagOf(GetNextSiblingElmt(*b2, nullptr)), "c");
    EXPECT_EQ(TagOf(GetNextSiblingElmt(*a, nullptr)), "b");
    EXPECT_EQ(GetFirstChildElmt(r, "B"), nullptr);
    EXPECT_EQ(GetFirstChildElmt(*a, nullptr), nullptr);
}

TEST_F(DomHelpers, NameListOrderDecidesNotChildOrder)
{
    zrxtest::ParsedDoc doc("<r><a/><b/><c/></r>");
    const NameListEntry names[] = {{10, "x"}, {11, "c"}, {12, "a"}, {0, nullptr}};
    std::size_t index = 7;
    EXPECT_EQ(TagOf(GetFirstChildElmt(doc.Root(), names, index)), "c");
    EXPECT_EQ(index, 1u);
    const NameListEntry none[] = {{1, "x"}, {2, "y"}, {0, nullptr}};
    index = 7;
    EXPECT_EQ(GetFirstChildElmt(doc.Root(), none, index), nullptr);
    EXPECT_EQ(index, 0u);
    const NameListEntry empty[] = {{5, nullptr}};
    index = 7;
    EXPECT_EQ(GetFirstChildElmt(doc.Root(), empty, index), nullptr);
    EXPECT_EQ(index, 0u);
}

TEST_F(DomHelpers, ExtensionFindersPassOverForeignAndUnnamedOnes)
{
    const std::string vendor = std::string("extender='") + VendorExtenderId + "'";
    zrxtest::ParsedDoc doc("<r><Extension name='opts'/>"
                           "<Extension extender='other.org' name='opts'/>"
                           "<X " + vendor + " name='opts'/>"
                           "<Extension " + vendor + " name='first'/>"
                           "<Extension " + vendor + "/>"
                           "<Extension " + vendor + " name='opts'/></r>");
    ASSERT_TRUE(doc.Status().IsOK());
    const xercesc::DOMElement& r = doc.Root();
    const xercesc::DOMElement* any = GetFirstChildExtension(r, nullptr);
    ASSERT_NE(any, nullptr);
    EXPECT_EQ(ToUTF8(GetAttribute(*any, "name")), "first");
    const xercesc::DOMElement* opts = GetFirstChildExtension(r, "opts");
    ASSERT_NE(opts, nullptr);
    EXPECT_EQ(GetNextSiblingElmt(*opts, nullptr), nullptr);  // the last child
    const xercesc::DOMElement* unnamed = GetNextSiblingExtension(*any, nullptr);
    ASSERT_NE(unnamed, nullptr);
    EXPECT_EQ(GetAttribute(*unnamed, "name"), nullptr);
    EXPECT_EQ(GetNextSiblingExtension(*unnamed, "opts"), opts);
    EXPECT_EQ(GetNextSiblingExtension(*opts, nullptr), nullptr);
    EXPECT_EQ(GetFirstChildExtension(r, "nothing"), nullptr);
    EXPECT_FALSE(IsVendorExtension(*unnamed, "opts"));
    EXPECT_TRUE(IsVendorExtension(*unnamed, nullptr));
    EXPECT_FALSE(IsVendorExtension(*GetFirstChildElmt(r, "Extension"), nullptr));
}

TEST_F(DomHelpers, FindXStrInListGivesTheLowestIndex)
{
    const NameListEntry names[] = {{9, "string"}, {9, "integer"}, {9, "real"},
                                   {9, "integer"}, {0, nullptr}};
    EXPECT_EQ(FindXStrInList(u"integer", names), 1);
    EXPECT_EQ(FindXStrInList(u"Integer", names), -1);
    const NameListEntry empty[] = {{0, nullptr}};
    EXPECT_EQ(FindXStrInList(u"real", empty), -1);
    const std::vector<std::string> list = {"a", "\xC3\xA9t\xC3\xA9", "b", "\xC3\xA9t\xC3\xA9"};
    EXPECT_EQ(FindXStrInList(u"\u00E9t\u00E9", list), 1);
    EXPECT_EQ(FindXStrInList(u"c", list), -1);
    EXPECT_EQ(FindXStrInList(u"a", std::vector<std::string>()), -1);
}
