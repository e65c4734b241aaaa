// UTF-8 <-> UTF-16: ToUTF8 and ToUTF16 convert directly and must answer
// exactly as a UTF-8 ZRXTranscoder, which goes through the XML library.
#include "ZRXTestDom.h"

#include <random>

using namespace ZRXPrsUtil;

namespace {

using Transcoding = zrxtest::XercesTest;
const std::vector<XMLCh> kEmpty{0};

} // namespace

TEST_F(Transcoding, ConvertsAndFailsToEmpty)
{
    const char* utf8 = "Gr\xC3\xB6\xC3\x9F"
                       "e \xE2\x82\xAC \xF0\x9F\x98\x80";
    const std::u16string utf16 = u"Gr\u00F6\u00DFe \u20AC \U0001F600";
    EXPECT_EQ(ToUTF8(utf16.c_str()), utf8);
    EXPECT_EQ(std::u16string(ToUTF16(utf8).data()), utf16);
    EXPECT_EQ(ToUTF8(nullptr), "");
    EXPECT_EQ(ToUTF16(""), kEmpty);
    EXPECT_EQ(ToUTF8(u"ab\xD800"), ""); // high surrogate as the last unit
    // Bad bytes, and text cut inside a character (a pass of the XML library's
    // transcoder consumes nothing there): the conversion ends and fails.
    const ZRXTranscoder reference;
    for (const char* bad : {"ab\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC0\x80", "abc\xC3",
                            "\xE2\x82", "x\xF0\x9F\x98"}) {
        EXPECT_EQ(ToUTF16(bad), kEmpty) << bad;
        EXPECT_EQ(reference.TranscodeFrom(bad), kEmpty) << bad;
    }
    // Objects for other encodings.
    const ZRXTranscoder latin1("ISO-8859-1");
    ASSERT_TRUE(latin1.isValid());
    EXPECT_EQ(std::u16string(latin1.TranscodeFrom("caf\xE9").data()), u"caf\u00E9");
    EXPECT_EQ(latin1.TranscodeTo(u"caf\u00E9"), "caf\xE9");
    EXPECT_EQ(latin1.TranscodeTo(u"5 \u20AC"), ""); // not representable: all fails
    const ZRXTranscoder unknown("no-such-encoding");
    EXPECT_FALSE(unknown.isValid());
    EXPECT_EQ(unknown.TranscodeFrom("abc"), kEmpty);
    EXPECT_EQ(unknown.TranscodeTo(u"abc"), "");
}

// Each of four shards takes a quarter of the lead bytes, of the code units
// and of the random texts, so that each test stays short under the sanitizers.
class TranscodingAgrees : public zrxtest::XercesTest, public ::testing::WithParamInterface<int> {
protected:
    void SameFrom(const std::string& bytes)
    {
        if (reference.TranscodeFrom(bytes.c_str()) != ToUTF16(bytes.c_str()))
            ADD_FAILURE() << "from " << ::testing::PrintToString(bytes);
    }
    void SameTo(const std::u16string& units)
    {
        if (reference.TranscodeTo(units.c_str()) != ToUTF8(units.c_str()))
            ADD_FAILURE() << "to " << ::testing::PrintToString(units);
    }
    const ZRXTranscoder reference;
};

TEST_P(TranscodingAgrees, OnShortSequencesAndRandomText)
{
    const unsigned char follow[] = {0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF};
    for (int lead = 0x80 + 0x20 * GetParam(); lead < 0xA0 + 0x20 * GetParam(); ++lead) {
        for (int second = 1; second < 0x100; ++second)
            SameFrom({'a', char(lead), char(second)});
        for (unsigned char f1 : follow)
            for (unsigned char f2 : follow)
                for (unsigned char f3 : follow) {
                    SameFrom({char(lead), char(f1), char(f2), char(f3), 'z'});
                    // Inside a pass the XML library passes over some forms
                    // that it refuses at the start of one (lead 0xF5..0xF7).
                    if (lead >= 0xF0)
                        SameFrom({'a', char(lead), char(f1), char(f2), char(f3)});
                }
    }
    // Each unit as the last one, and before a letter.
    for (char32_t unit = 0x4000 * GetParam() + 1; unit < 0x4000 * (GetParam() + 1u); ++unit) {
        SameTo({u'x', char16_t(unit)});
        SameTo({char16_t(unit), u'q'});
    }
    for (char16_t high : {0xD800, 0xDBFF}) // a high surrogate takes any partner
        for (char16_t partner : {0x41, 0xD7FF, 0xD800, 0xDC00, 0xDFFF, 0xE000, 0xFFFF})
            SameTo({high, partner, u'q'});

    std::mt19937 random(20261123 + GetParam());
    // clang-format off
    const char* pieces[] = {"a", " ", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBF\xBF",
                            "\x80", "\xED\xB0\x80", "\xC2"};
    // clang-format on
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (int i = int(random() % 40); i > 0; --i)
            text += pieces[random() % (round % 2 ? 9 : 6)];
        SameFrom(text);
        SameTo(ToUTF16(text.c_str()).data());
    }
    // Several passes of 1000 units, surrogate pairs across their boundaries.
    std::string longText;
    for (int i = 0; i < 2500; ++i)
        longText += i % 3 ? "\xF0\x9F\x98\x80" : "b\xC3\xA9";
    SameFrom(longText);
    EXPECT_EQ(ToUTF8(ToUTF16(longText.c_str()).data()), longText);
}

INSTANTIATE_TEST_SUITE_P(Quarters, TranscodingAgrees, ::testing::Range(0, 4));

// The conversions keep nothing of the XML library, so they stay right through
// its start-ups and shutdowns (checked under the sanitizers too).
TEST(TranscodingLifecycle, RepeatedInitializeAndTerminate)
{
    for (int cycle = 0; cycle < 4; ++cycle) {
        zrxtest::XercesSession session;
        const ZRXTranscoder utf8;
        {
            zrxtest::XercesSession nested; // a second object of the library
            EXPECT_EQ(ToUTF8(ToUTF16("\xE2\x82\xAC").data()), "\xE2\x82\xAC");
        }
        EXPECT_EQ(utf8.TranscodeTo(u"x\u00E9"), "x\xC3\xA9");
    }
    EXPECT_FALSE(ZRXTranscoder().isValid()); // the library is stopped
    // Well-formed text converts without it, up to the edges of each form.
    const char* edges = "still \xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
                        "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    EXPECT_EQ(ToUTF8(ToUTF16(edges).data()), edges);
}
