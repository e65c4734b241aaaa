// The number rules and the building helpers.
#include "ZRXScopedLocale.h"
#include "ZRXTestDom.h"

#include <zrcommonr/ZRMV.h>

#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

using namespace ZRXPrsUtil;

namespace {

using Numbers = zrxtest::XercesTest;
const double kMissing = ZRMV::gMissingValue;

// A number out of range by its exponent alone once its 400 leading zeros are
// passed over: its first digit decides whether it is too large or too small.
const std::string kZeros400 = std::string(400, '0') + "1e-350";

} // namespace

TEST_F(Numbers, IntegersOutsideIntAreRefusedNotWrapped)
{
    // clang-format off
    for (const auto& [text, ok, expected] :
         {std::tuple{"+5", true, 5}, {" -0 ", true, 0}, {"2147483647", true, INT_MAX},
          {"-2147483648", true, INT_MIN}, {"000002147483647", true, INT_MAX}, {"+0019", true, 19},
          {"2147483648", false, 0}, {"12345678901", false, 0}, {"", false, 0}, {"-", false, 0},
          {"1.0", false, 0}, {"1e3", false, 0}, {"1 2", false, 0}}) {
        // clang-format on
        int value = -99;
        EXPECT_EQ(ParseInteger(ToUTF16(text).data(), value), ok) << text;
        EXPECT_EQ(value, ok ? expected : -99) << text;
    }
    int value = -99;
    EXPECT_FALSE(ParseInteger(nullptr, value));
}

// What is read and written does not depend on the host locale, whose decimal
// separator may be a comma or the two bytes of U+066B. The forms are the XML
// library's: signs and lone points, exponents, the edges of the double range
// as the library reads them, except a number that rounds up to the least
// normal double, which is that double and not an infinity.
TEST_F(Numbers, DoublesReadAsTheXmlLibraryInEveryHostLocale)
{
    // clang-format off
    const std::tuple<const char*, bool, double> cases[] = {
        {"-2E2", true, -200}, {".5", true, 0.5}, {"NaN", true, kMissing}, {"INF", false, 0},
        {"-INF", false, 0}, {"1e999", false, 0}, {"1e100000", false, 0}, {"nan", false, 0},
        {"", false, 0},
        {"1,5", false, 0}, {"1\xD9\xAB" "5", false, 0}, {" 2.25 ", true, 2.25},
        {"-2.5E-3", true, -0.0025}, {"+1.5e2", true, 150},
        {"0.125000000000000000000000000000000000000000000000000000000000000000001", true, 0.125},
        {"5.", true, 5}, {"+.", true, 0}, {"-.", true, -0.0}, {".", false, 0}, {"+", false, 0},
        {"1e", false, 0}, {"e5", false, 0}, {"1e+-5", false, 0}, {"1 e5", false, 0},
        {"0x10", false, 0}, {"\v1", false, 0}, {"1.7976931348623157e308", true, DBL_MAX},
        {"1.7976931348623159e308", false, 0}, {"-1e99999999999999999999", false, 0},
        {"5e-324", true, 0}, {"-5e-324", true, 0}, {"1e-400", true, 0},
        {"-1e-99999999999999999999", true, -0.0}, {"0e99999999999999999999", true, 0},
        {"2.2250738585072014e-308", true, DBL_MIN}, {"2.2250738585072012e-308", true, DBL_MIN},
        {"\r-1.25E+2\n", true, -125}, {kZeros400.c_str(), true, 0}};
    // clang-format on
    for (const char* name : {"C", "de_DE.UTF-8", "ps_AF.UTF-8"}) {
        const zrxtest::ScopedLocale host(name);
        ASSERT_TRUE(host.Active()) << name << " is missing";
        for (const auto& [text, ok, expected] : cases) {
            double value = 8;
            EXPECT_EQ(ParseDouble(ToUTF16(text).data(), value), ok) << name << " " << text;
            EXPECT_EQ(value, ok ? expected : 8) << name << " " << text;
            EXPECT_EQ(std::signbit(value), ok && std::signbit(expected)) << text;
        }
        std::vector<double> values = {1};
        EXPECT_TRUE(ParseDoublesList(nullptr, values));
        EXPECT_TRUE(values.empty());
        EXPECT_TRUE(ParseDoublesList(ToUTF16(" 1\t2.5e1\n NaN .75 ").data(), values)) << name;
        EXPECT_EQ(values, (std::vector<double>{1, 25, kMissing, 0.75})) << name;
        EXPECT_FALSE(ParseDoublesList(ToUTF16("1 INF 4").data(), values));
        EXPECT_TRUE(values.empty());

        zrxtest::ParsedDoc doc("<PMML v='1.5e-1'/>");
        xercesc::DOMElement& root = *doc.parser->getDocument()->getDocumentElement();
        double read = 0;
        EXPECT_EQ(GetDoubleAttribute(root, "v", read), 0) << name;
        EXPECT_EQ(read, 0.15) << name;
        EXPECT_TRUE(SetAttribute(root, "w", 0.5));
        EXPECT_EQ(ToUTF8(GetAttribute(root, "w")), "0.5") << name;
    }
}

TEST_F(Numbers, BuildingHelpersReportDomFailuresByTheirResult)
{
    zrxtest::ParsedDoc doc("<PMML><Header/></PMML>");
    zrxtest::ParsedDoc other("<Other/>");
    xercesc::DOMDocument& d = *doc.parser->getDocument();
    xercesc::DOMElement& root = *d.getDocumentElement();
    xercesc::DOMElement* header =
        const_cast<xercesc::DOMElement*>(GetFirstChildElmt(root, "Header"));

    for (const char* bad : {"1bad", "", "\xFF"})
        EXPECT_EQ(CreateElement(d, bad), nullptr) << bad;
    xercesc::DOMElement* data = CreateElement(d, "DataDictionary");
    ASSERT_NE(data, nullptr);
    EXPECT_TRUE(SetAttribute(*data, "numberOfFields", 12.0));
    EXPECT_TRUE(SetAttribute(*data, "label", "\xC3\xA9t\xC3\xA9"));
    EXPECT_FALSE(SetAttribute(*data, "bad name", "x"));
    EXPECT_EQ(ToUTF8(GetAttribute(*data, "numberOfFields")), "12");
    EXPECT_EQ(ToUTF8(GetAttribute(*data, "label")), "\xC3\xA9t\xC3\xA9");

    EXPECT_TRUE(InsertElement(root, data, header));
    EXPECT_EQ(GetFirstChildElmt(root, nullptr), data);
    EXPECT_FALSE(InsertElement(root, CreateElement(*other.parser->getDocument(), "F"), nullptr));
    EXPECT_FALSE(InsertElement(*data, &root, nullptr)); // an ancestor
    EXPECT_FALSE(InsertElement(root, nullptr, nullptr));
    EXPECT_FALSE(ReplaceElement(root, CreateElement(d, "X"), CreateElement(d, "NotAChild")));
    EXPECT_FALSE(ReplaceElement(root, nullptr, header));

    xercesc::DOMElement* ext = CreateExtension(d, "splitInfo");
    ASSERT_NE(ext, nullptr);
    EXPECT_TRUE(ReplaceElement(root, ext, header));
    EXPECT_EQ(GetFirstChildElmt(root, "Header"), nullptr);
    EXPECT_EQ(GetFirstChildExtension(root, "splitInfo"), ext);
    header->release();
}

// Plain decimals, the form most numbers take, give bit for bit the value of
// the XML library's own double, whatever their length, sign or zeros.
TEST_F(Numbers, PlainDecimalsGiveTheXMLLibrarysValue)
{
    std::mt19937 random(7);
    std::vector<std::string> texts;
    std::istringstream fixed("0 -0 -0.0 007 0.1 123456789012345678901234567890123456789 "
                             "1234567890123456789012345678901234567890123 9007199254740993 "
                             "0.30000000000000004 -2.5 1. - 1.5.2 1-");
    for (std::string text; fixed >> text;)
        texts.push_back(text);
    for (int i = 0; i < 2000; ++i) {
        std::string text = random() % 2 ? "-" : "";
        text += std::to_string(random() % 100000000);
        if (random() % 3)
            text += "." + std::to_string(random()) + std::to_string(random() % 1000);
        texts.push_back(text);
    }
    for (const std::string& text : texts) {
        const std::vector<XMLCh> wide = ToUTF16(text.c_str());
        bool normal = false;
        double expected = 0;
        try {
            const xercesc::XMLDouble library(wide.data());
            normal = library.getType() == xercesc::XMLDouble::Normal;
            expected = library.getValue();
        } catch (const xercesc::XMLException&) {
        }
        double value = 8;
        ASSERT_EQ(ParseDouble(wide.data(), value), normal) << text;
        if (normal) {
            EXPECT_EQ(std::memcmp(&value, &expected, sizeof value), 0)
                << text << ": " << value << " against " << expected;
        }
    }
}
