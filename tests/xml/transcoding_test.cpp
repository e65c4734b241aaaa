// Conversion between UTF-8 and the XML library's UTF-16: the fast ToUTF8 and
// ToUTF16 must answer exactly as a UTF-8 ZRXTranscoder does, which goes
// through the XML library's own transcoder.
#include "ZRXTestDom.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace ZRXPrsUtil;

namespace {

class Transcoding : public ::testing::Test {
protected:
    zrxtest::XercesSession session;
};

std::u16string Units(const std::vector<XMLCh>& v)
{
    return std::u16string(v.begin(), v.end());
}

void ExpectSameFrom(const ZRXTranscoder& reference, const std::string& text)
{
    ASSERT_EQ(Units(reference.TranscodeFrom(text.c_str())), Units(ToUTF16(text.c_str())))
        << "bytes of length " << text.size();
}

void ExpectSameTo(const ZRXTranscoder& reference, const std::u16string& text)
{
    ASSERT_EQ(reference.TranscodeTo(text.c_str()), ToUTF8(text.c_str()))
        << "units of length " << text.size();
}

} // namespace

TEST_F(Transcoding, ConvertsBothWaysAndGivesEmptyResultsForNullAndBadText)
{
    EXPECT_EQ(ToUTF8(nullptr), "");
    EXPECT_EQ(ToUTF16(""), std::vector<XMLCh>{0});
    EXPECT_EQ(Units(ToUTF16("Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80")),
              std::u16string(u"Gr\u00F6\u00DFe \u20AC \U0001F600") + u'\0');
    EXPECT_EQ(ToUTF8(u"Gr\u00F6\u00DFe \u20AC \U0001F600"),
              "Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80");
    // Not UTF-8: a stray continuation byte, an encoded surrogate, a code point
    // beyond U+10FFFF, an overlong three-byte form.
    for (const char* bad : {"ab\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE0\x80\x80"})
        EXPECT_EQ(ToUTF16(bad), std::vector<XMLCh>{0}) << bad;
    // A high surrogate as the last unit can't be written.
    EXPECT_EQ(ToUTF8(u"ab\xD800"), "");
}

TEST_F(Transcoding, TextCutInsideACharacterFailsAndEnds)
{
    // A pass of the transcoder consumes nothing there: the conversion ends
    // and counts as failed, for the object as for the free functions.
    const ZRXTranscoder utf8;
    for (const char* cut : {"abc\xC3", "abc\xE2\x82", "\xF0\x9F\x98", "x\xFF"}) {
        EXPECT_EQ(utf8.TranscodeFrom(cut), std::vector<XMLCh>{0}) << cut;
        EXPECT_EQ(ToUTF16(cut), std::vector<XMLCh>{0}) << cut;
    }
}

TEST_F(Transcoding, AgreesWithTheXmlLibraryOnEveryShortByteSequence)
{
    const ZRXTranscoder reference;
    ASSERT_TRUE(reference.isValid());
    std::string text(3, 'a');
    for (int b1 = 0x80; b1 < 0x100; ++b1) {
        text[1] = char(b1);
        for (int b2 = 1; b2 < 0x100; ++b2) {
            text[2] = char(b2);
            ExpectSameFrom(reference, text);
            ExpectSameFrom(reference, text.substr(1));
        }
    }
    const unsigned char follow[] = {0x01, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F,
                                    0xA0, 0xBF, 0xC0, 0xC2, 0xF0, 0xFF};
    for (int lead = 0xE0; lead < 0x100; ++lead)
        for (unsigned char f1 : follow)
            for (unsigned char f2 : follow)
                for (unsigned char f3 : follow) {
                    const char seq[] = {char(lead), char(f1), char(f2), char(f3), 'z', 0};
                    ExpectSameFrom(reference, seq);
                    ExpectSameFrom(reference, std::string(seq, 3));
                }
}

TEST_F(Transcoding, AgreesWithTheXmlLibraryOnEveryCodeUnitAndOddSurrogates)
{
    const ZRXTranscoder reference;
    for (char32_t unit = 1; unit < 0x10000; ++unit) {
        ExpectSameTo(reference, std::u16string(1, char16_t(unit)));
        ExpectSameTo(reference, u"x" + std::u16string(1, char16_t(unit)) + u"y");
    }
    const char16_t partners[] = {0x41, 0x7FF, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
    for (char16_t high : {char16_t(0xD800), char16_t(0xDABC), char16_t(0xDBFF)})
        for (char16_t partner : partners)
            ExpectSameTo(reference, std::u16string{high, partner, u'q'});
}

TEST_F(Transcoding, AgreesWithTheXmlLibraryOnRandomAndLongText)
{
    const ZRXTranscoder reference;
    std::mt19937 random(20261123);
    const std::vector<std::string> pieces = {"a", "Z", " ", "\xC3\xA9", "\xE2\x82\xAC",
                                             "\xF0\x9F\x98\x80", "\xC0\x80", "\x80", "\xED\xB0\x80",
                                             "\xF4\x8F\xBF\xBF", "\xC2", "\xEF\xBF\xBF"};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        const int count = int(random() % 40);
        for (int i = 0; i < count; ++i)
            text += pieces[random() % (round % 2 ? pieces.size() : 6)];
        ExpectSameFrom(reference, text);
        const std::vector<XMLCh> units = ToUTF16(text.c_str());
        ExpectSameTo(reference, std::u16string(units.data()));
    }
    // More than one pass of 1000 units, with characters of four bytes and
    // surrogate pairs across the pass boundaries.
    std::string longText;
    for (int i = 0; i < 2500; ++i)
        longText += i % 3 ? "\xF0\x9F\x98\x80" : "b\xC3\xA9";
    ExpectSameFrom(reference, longText);
    const std::vector<XMLCh> longUnits = ToUTF16(longText.c_str());
    EXPECT_GT(longUnits.size(), 4000u);
    EXPECT_EQ(ToUTF8(longUnits.data()), longText);
    ExpectSameTo(reference, std::u16string(longUnits.data()));
}

TEST_F(Transcoding, OtherEncodingsThroughTheObject)
{
    const ZRXTranscoder latin1("ISO-8859-1");
    ASSERT_TRUE(latin1.isValid());
    EXPECT_EQ(Units(latin1.TranscodeFrom("caf\xE9")), std::u16string(u"caf\u00E9") + u'\0');
    EXPECT_EQ(latin1.TranscodeTo(u"caf\u00E9"), "caf\xE9");
    // A character the encoding can't hold fails the whole conversion.
    EXPECT_EQ(latin1.TranscodeTo(u"price \u20AC"), "");
    EXPECT_EQ(latin1.TranscodeTo(nullptr), "");

    const ZRXTranscoder unknown("no-such-encoding");
    EXPECT_FALSE(unknown.isValid());
    EXPECT_EQ(unknown.TranscodeFrom("abc"), std::vector<XMLCh>{0});
    EXPECT_EQ(unknown.TranscodeTo(u"abc"), "");
}

TEST_F(Transcoding, ComparesXmlTextWithUtf8Exactly)
{
    EXPECT_TRUE(XStrEqualsUTF8Str(u"DataField", "DataField"));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"DataField", "datafield"));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"DataFields", "DataField"));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"Data", "DataField"));
    EXPECT_TRUE(XStrEqualsUTF8Str(u"Gr\u00F6\u00DFe", "Gr\xC3\xB6\xC3\x9F" "e"));
    EXPECT_FALSE(XStrEqualsUTF8Str(u"Gro\u00DFe", "Gr\xC3\xB6\xC3\x9F" "e"));
    EXPECT_TRUE(XStrEqualsUTF8Str(nullptr, ""));
    EXPECT_FALSE(XStrEqualsUTF8Str(nullptr, "a"));
}

// The conversions hold no state of the XML library: they stay right through
// any number of start-ups and shutdowns of it (run under the sanitizers too).
TEST(TranscodingLifecycle, SurvivesRepeatedInitializeAndTerminate)
{
    for (int cycle = 0; cycle < 5; ++cycle) {
        zrxtest::XercesSession session;
        const ZRXTranscoder utf8;
        EXPECT_TRUE(utf8.isValid());
        EXPECT_EQ(ToUTF8(ToUTF16("\xE2\x82\xAC name").data()), "\xE2\x82\xAC name");
        EXPECT_TRUE(XStrEqualsUTF8Str(ToUTF16("Fields").data(), "Fields"));
        {
            zrxtest::XercesSession nested;  // a second object of the library
            EXPECT_EQ(utf8.TranscodeTo(u"x\u00E9"), "x\xC3\xA9");
        }
        EXPECT_EQ(utf8.TranscodeTo(u"still"), "still");
    }
    // With the XML library stopped, a transcoder object is merely invalid.
    const ZRXTranscoder stopped;
    EXPECT_FALSE(stopped.isValid());
    EXPECT_EQ(stopped.TranscodeTo(u"x"), "");
}
