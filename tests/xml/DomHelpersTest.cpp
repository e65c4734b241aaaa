// Attribute readers with their -1/0/1 convention, tags, navigation by tag and
// by name list, the vendor Extension finders, name lists and number lists,
// over the elements of data/xml/helpers.xml.
#include "ZRXTestDom.h"

#include <zrcommonr/ZRMV.h>

#include <climits>
#include <tuple>

using namespace ZRXPrsUtil;

namespace {

class DomHelpers : public zrxtest::XercesTest {
protected:
    const xercesc::DOMElement& Part(const char* tag) const
    {
        return *GetFirstChildElmt(doc.Root(), tag);
    }
    zrxtest::ParsedDoc doc{zrxtest::ReadFile(ZRX_TEST_DATA_DIR "/xml/helpers.xml")};
};

std::string Attr(const xercesc::DOMElement* element, const char* name)
{
    return element ? ToUTF8(GetAttribute(*element, name)) : "(none)";
}

} // namespace

TEST_F(DomHelpers, AttributesTellAbsentFromEmptyAndFollowTheNumberRules)
{
    const xercesc::DOMElement& r = Part("attributes");
    ASSERT_NE(GetAttribute(r, "e"), nullptr);
    EXPECT_EQ(*GetAttribute(r, "e"), 0);
    EXPECT_EQ(GetAttribute(r, "E"), nullptr);
    EXPECT_EQ(GetAttribute(*r.getFirstChild(), "e"), nullptr); // a text node
    // Names past the short ASCII ones: at and over 63 bytes, not ASCII, not UTF-8.
    const std::string n63(63, 'n');
    EXPECT_EQ(Attr(&r, n63.c_str()), "63");
    EXPECT_EQ(Attr(&r, (n63 + "n").c_str()), "64");
    EXPECT_EQ(GetAttribute(r, (n63 + "nn").c_str()), nullptr);
    EXPECT_EQ(Attr(&r, "caf\xC3\xA9"), "accent");
    EXPECT_EQ(GetAttribute(r, "caf\xC3"), nullptr);

    // clang-format off
    for (const auto& [name, sign, result, expected] :
         {std::tuple{"neg", 0, 1, -3}, {"neg", -1, 0, -3}, {"zero", 1, 1, 0}, {"zero", 0, 0, 0},
          {"pos", 1, 0, 7}, {"min", -1, 0, INT_MIN}, {"absent", -1, -1, 99}, {"bad", -1, 1, 99},
          {"big", -1, 1, 99}, {"e", -1, 1, 99}}) {
        // clang-format on
        int value = 99;
        EXPECT_EQ(GetIntAttribute(r, name, sign, value), result) << name << sign;
        EXPECT_EQ(value, expected) << name << sign;
    }
    for (const auto& [name, result, expected] : {std::tuple{"inf", 1, 4.0},
                                                 {"absent", -1, 4.0},
                                                 {"d", 0, 2500.0},
                                                 {"nan", 0, ZRMV::gMissingValue}}) {
        double value = 4;
        EXPECT_EQ(GetDoubleAttribute(r, name, value), result) << name;
        EXPECT_EQ(value, expected) << name;
    }
}

TEST_F(DomHelpers, NavigationMatchesWholeTagsAndSkipsOtherNodes)
{
    EXPECT_FALSE(TagNameEquals(doc.Root(), "r"));
    EXPECT_TRUE(TagNameEquals(doc.Root(), "p:r"));
    const xercesc::DOMElement& r = Part("navigation");
    EXPECT_EQ(AsElement(*r.getFirstChild(), nullptr), nullptr);
    EXPECT_EQ(ToUTF8(GetFirstChildElmt(r, nullptr)->getTagName()), "a");
    const xercesc::DOMElement* b1 = GetFirstChildElmt(r, "b");
    EXPECT_EQ(Attr(b1, "id"), "1");
    EXPECT_EQ(Attr(GetNextSiblingElmt(*b1, "b"), "id"), "2");
    EXPECT_EQ(GetNextSiblingElmt(*GetNextSiblingElmt(*b1, "b"), "b"), nullptr);
    EXPECT_TRUE(TagNameEquals(*GetNextSiblingElmt(*GetFirstChildElmt(r, "c"), nullptr), "p:c"));

    // The order of the names decides, not the order of the children.
    const NameListEntry names[] = {{10, "x"}, {11, "c"}, {12, "a"}, {0, nullptr}};
    std::size_t index = 7;
    EXPECT_EQ(GetFirstChildElmt(r, names, index), GetFirstChildElmt(r, "c"));
    EXPECT_EQ(index, 1u);
    const NameListEntry empty[] = {{5, nullptr}};
    EXPECT_EQ(GetFirstChildElmt(r, empty, index), nullptr);
    EXPECT_EQ(index, 0u);
}

TEST_F(DomHelpers, ExtensionFindersPassOverForeignOnes)
{
    const xercesc::DOMElement& r = Part("extensions");
    const xercesc::DOMElement* first = GetFirstChildExtension(r, nullptr);
    EXPECT_EQ(Attr(first, "name"), "first");
    const xercesc::DOMElement* opts = GetFirstChildExtension(r, "opts");
    ASSERT_NE(opts, nullptr);
    EXPECT_EQ(GetNextSiblingExtension(*first, "opts"), opts);
    EXPECT_EQ(GetNextSiblingExtension(*opts, nullptr), nullptr);
    EXPECT_FALSE(IsVendorExtension(*GetNextSiblingExtension(*first, nullptr), "opts"));
}

TEST_F(DomHelpers, FindXStrInListGivesTheLowestIndex)
{
    const NameListEntry names[] = {{9, "string"}, {9, "integer"}, {9, "integer"}, {0, nullptr}};
    EXPECT_EQ(FindXStrInList(u"integer", names), 1);
    EXPECT_EQ(FindXStrInList(u"Integer", names), -1);
    const std::vector<std::string> list = {"a", "\xC3\xA9t\xC3\xA9", "\xC3\xA9t\xC3\xA9"};
    EXPECT_EQ(FindXStrInList(u"\u00E9t\u00E9", list), 1);
    EXPECT_EQ(FindXStrInList(u"a", std::vector<std::string>()), -1);
}

TEST_F(DomHelpers, AssembleDoublesListWantsOneTextChild)
{
    const xercesc::DOMElement* a = GetFirstChildElmt(Part("lists"), "a");
    const std::vector<std::vector<double>> good = {{}, {1, ZRMV::gMissingValue, 3}, {}, {}};
    for (std::size_t i = 0; i < 7; ++i, a = GetNextSiblingElmt(*a, "a")) {
        std::vector<double> values = {9};
        EXPECT_EQ(AssembleDoublesList(*a, values), i != 2 && i < 4) << i;
        EXPECT_EQ(values, i < 4 ? good[i] : std::vector<double>{9}) << i; // untouched from 4 on
    }
}
