// Conversions: the fitting rule, cutting at character boundaries, bad input,
// the string and new-array forms and the generic routes.
#include "EncodingTestSupport.h"

#include <cstring>
#include <memory>
#include <vector>

using namespace ZRMem;
using namespace ZRMemTest;

namespace {

const unsigned short kFill = 0x7777;

std::vector<unsigned short> Filled16(size_t n)
{
    return std::vector<unsigned short>(n, kFill);
}

} // namespace

TEST_F(EncodingTest, FittingRuleCountedAndTerminated)
{
    struct Case {
        const char* source;
        int sourceLength;
        int capacity;
        int length;
        int code;
        unsigned short atLength;  // the unit behind the text
    };
    const Case cases[] = {
        {"abcd", 4, 10, 4, 0, ' '},    // fits with room: a space behind
        {"abcd", -1, 10, 4, 0, 0},     // terminated: a NUL behind
        {"abcd", 4, 4, 4, 0, kFill},   // fits exactly: nothing behind
        {"abcd", -1, 5, 4, 0, 0},      // exactly, with room for the NUL
        {"abcdefghi", -1, 5, 4, 1, 0}, // cut, NUL at the end
        {"abcdefghi", 9, 5, 5, 1, kFill},
        {"", 0, 3, 0, 0, ' '},         // an empty text gets its space
        {"", -1, 1, 0, 0, 0},
    };
    for (const Case& c : cases) {
        auto buffer = Filled16(12);
        int code = -1;
        const int length = VORKMB8to16(buffer.data(), c.capacity, c.source, c.sourceLength, &code);
        SCOPED_TRACE(std::string(c.source) + " capacity " + std::to_string(c.capacity));
        EXPECT_EQ(length, c.length);
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(buffer[static_cast<size_t>(length)], c.atLength);
        if (c.length + 1 < c.capacity) {
            EXPECT_EQ(buffer[static_cast<size_t>(length) + 1], kFill) << "the rest is left alone";
        }
        EXPECT_EQ(buffer[static_cast<size_t>(c.capacity)], kFill) << "nothing beyond the capacity";
    }
}

TEST_F(EncodingTest, MeasuringWithoutCapacity)
{
    int code = -1;
    auto buffer = Filled16(4);
    EXPECT_EQ(VORKMB8to16(nullptr, 0, "\xE2\x82\xAC" "ab", -1, &code), 3);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(VORKMB8to16(buffer.data(), -5, "abc", 3, &code), 3);
    EXPECT_EQ(buffer[0], kFill) << "a negative capacity writes nothing";
    EXPECT_EQ(VORKMB8to16(nullptr, 10, "abc", 3, &code), 3) << "a null target only measures";
    EXPECT_EQ(VORKMB16to8(nullptr, 0, U16({0x20AC}).c_str(), -1, &code), 3);
    EXPECT_EQ(VORKMB8to16(nullptr, 0, "", -1, &code), 0);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(VORKMB8to16(nullptr, 0, nullptr, 5, nullptr), 0) << "a null source is empty";
}

TEST_F(GbkTest, CuttingAtCharacterBoundaries)
{
    int code = -1;
    // UTF-16: a surrogate pair that does not fit leaves a space.
    auto u16 = Filled16(4);
    EXPECT_EQ(VORKMB8to16(u16.data(), 2, "a\xF0\x9F\x98\x80", 5, &code), 1);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(u16[1], ' ');
    EXPECT_EQ(u16[2], kFill);
    // UTF-8: two three-byte characters into four bytes.
    char u8[8];
    std::memset(u8, 'Z', sizeof u8);
    const unsigned short euros[] = {0x20AC, 0x20AC};
    EXPECT_EQ(VORKMB16to8(u8, 4, euros, 2, &code), 3);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(std::string(u8, 5), "\xE2\x82\xAC Z");
    std::memset(u8, 'Z', sizeof u8);
    EXPECT_EQ(VORKMBCodePageto8(nullptr, u8, 4, "\xD6\xD0\xD6\xD0", 4, &code), 3);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(std::string(u8, 5), "\xE4\xB8\xAD Z");
    // Code page: a double-byte character does not fit in the last byte.
    char cp[6];
    std::memset(cp, 'Z', sizeof cp);
    const unsigned short zhong[] = {'a', 0x4E2D, 0x4E2D, 0};
    EXPECT_EQ(VORKMB16toCodePage(nullptr, cp, 5, zhong, -1, &code), 3);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(std::string(cp, 6), std::string("a\xD6\xD0\0ZZ", 6));
    std::memset(cp, 'Z', sizeof cp);
    EXPECT_EQ(VORKMB8toCodePage(nullptr, cp, 3, "\xE4\xB8\xAD\xE4\xB8\xAD", 6, &code), 2);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(std::string(cp, 4), "\xD6\xD0 Z");
}

TEST_F(EncodingTest, IllFormedUnicodeGivesTroubleAndAnEmptyText)
{
    const char* bad[] = {"a\x80", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xE2\x82", "\xF4\x90\x80\x80", "\xFF"};
    for (const char* s : bad) {
        auto buffer = Filled16(8);
        int code = -1;
        EXPECT_EQ(VORKMB8to16(buffer.data(), 8, s, -1, &code), 0) << testing::PrintToString(s);
        EXPECT_EQ(code, 3);
        EXPECT_EQ(buffer[0], 0);
        U16String out = U16({'x'});
        EXPECT_EQ(VORKMBU8ToU16(out, s), 3);
        EXPECT_TRUE(out.empty());
    }
    char u8[8];
    int code = -1;
    const unsigned short lone[] = {'a', 0xDC00, 'b', 0};
    EXPECT_EQ(VORKMB16to8(u8, 8, lone, 3, &code), 0);
    EXPECT_EQ(code, 3);
    EXPECT_EQ(u8[0], ' ');
    std::string out = "x";
    EXPECT_EQ(VORKMBU16ToU8(out, U16({0xD800})), 3);
    EXPECT_EQ(out, "");
    std::unique_ptr<char[]> array(VORKMBTranscodeU8(lone));
    ASSERT_NE(array, nullptr);
    EXPECT_STREQ(array.get(), "");
}

TEST_F(EncodingTest, IllFormedUtf8IntoAWideCodePageIsTrouble)
{
    Internal::SetDefaultCodePage("UTF-8");
    std::string out;
    EXPECT_EQ(VORKMBU8ToCodePage(nullptr, out, "\xFF"), 1) << "U+FFFD takes three bytes of a room of two";
    char target[8];
    int code = -1;
    EXPECT_EQ(VORKMB8toCodePage(nullptr, target, 8, "a\xFF", -1, &code), 4);
    EXPECT_EQ(code, 3);
}

TEST_F(GbkTest, StringForms)
{
    U16String u16;
    EXPECT_EQ(VORKMBU8ToU16(u16, "a\xE4\xB8\xAD\xF0\x9F\x98\x80"), 0);
    EXPECT_EQ(u16, U16({'a', 0x4E2D, 0xD83D, 0xDE00}));
    std::string u8;
    EXPECT_EQ(VORKMBU16ToU8(u8, u16), 0);
    EXPECT_EQ(u8, "a\xE4\xB8\xAD\xF0\x9F\x98\x80");
    std::string cp;
    EXPECT_EQ(VORKMBU8ToCodePage(nullptr, cp, "a\xE4\xB8\xAD"), 0);
    EXPECT_EQ(cp, "a\xD6\xD0");
    EXPECT_EQ(VORKMBCodePageToU8(nullptr, u8, cp), 0);
    EXPECT_EQ(u8, "a\xE4\xB8\xAD");
    EXPECT_EQ(VORKMBCodePageToU16(nullptr, u16, cp), 0);
    EXPECT_EQ(u16, U16({'a', 0x4E2D}));
    EXPECT_EQ(VORKMBU16ToCodePage(nullptr, cp, U16({0x4E2D, 0x0E01})), 3) << "no Thai in GBK";
    EXPECT_EQ(cp, "\xD6\xD0?");
    // Target and source may be one object.
    std::string same = "a\xE4\xB8\xAD";
    EXPECT_EQ(VORKMBU8ToCodePage(nullptr, same, same), 0);
    EXPECT_EQ(same, "a\xD6\xD0");
    // A text that overruns its room: one UTF-8 byte a code page byte, but
    // GB18030 takes four bytes for U+00C0.
    Converter gb18030("gb18030");
    EXPECT_EQ(VORKMBU8ToCodePage(gb18030.get(), cp, "\xC3\x80"), 1);
    EXPECT_EQ(cp, "");
    EXPECT_EQ(VORKMBU8ToCodePage(gb18030.get(), cp, ""), 0);
}

TEST_F(GbkTest, GenericRoutes)
{
    Converter cp1252("windows-1252");
    U16String u16;
    // UTF-8 mode: no converter is consulted where nothing is converted.
    EXPECT_EQ(VORKMBGenericToU16(cp1252.get(), u16, "\xC3\xA9"), 0);
    EXPECT_EQ(u16, U16({0xE9}));
    std::string s;
    EXPECT_EQ(VORKMBGenericToU8(cp1252.get(), s, "\xFF"), 0);
    EXPECT_EQ(s, "\xFF");
    EXPECT_EQ(VORKMBCodePageToGeneric(cp1252.get(), s, "\xE9"), 0);
    EXPECT_EQ(s, "\xC3\xA9");
    EXPECT_EQ(VORKMBU16ToGeneric(s, U16({0x4E2D})), 0);
    EXPECT_EQ(s, "\xE4\xB8\xAD");
    // Byte copy: reports 0 even when it cuts inside a character.
    char buf[8];
    std::memset(buf, 'Z', sizeof buf);
    int code = -1;
    EXPECT_EQ(VORKMBGenericto8(buf, 2, "\xE4\xB8\xAD", 3, &code), 2);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(std::string(buf, 3), "\xE4\xB8Z");
    EXPECT_EQ(VORKMB8toGeneric(buf, 3, "abcdef", -1, &code), 2) << "the NUL stays within the capacity";
    EXPECT_EQ(std::string(buf, 4), std::string("ab\0Z", 4));
    EXPECT_EQ(VORKMBGenericto8(nullptr, 0, "abcdef", -1, &code), 6);

    SetUTF8mode(0);
    EXPECT_EQ(VORKMBGenericToU16(u16, "\xD6\xD0"), 0);
    EXPECT_EQ(u16, U16({0x4E2D}));
    EXPECT_EQ(VORKMBGenericToU8(s, "\xD6\xD0"), 0);
    EXPECT_EQ(s, "\xE4\xB8\xAD");
    EXPECT_EQ(VORKMBU8ToGeneric(s, "\xE4\xB8\xAD"), 0);
    EXPECT_EQ(s, "\xD6\xD0");
    EXPECT_EQ(VORKMBGenericToCodePage(cp1252.get(), s, "\xD6\xD0"), 0);
    EXPECT_EQ(s, "\xD6\xD0") << "code page mode: generic text is code page text";
    EXPECT_EQ(VORKMBGenerictoCodePage(nullptr, buf, 8, "ab", -1, &code), 2);
    EXPECT_EQ(VORKMB16toGeneric(buf, 8, U16({0x4E2D}).c_str(), -1, &code), 2);
    EXPECT_STREQ(buf, "\xD6\xD0");
    unsigned short wide[4];
    EXPECT_EQ(VORKMBGenericto16(wide, 4, "\xD6\xD0", -1, &code), 1);
    EXPECT_EQ(wide[0], 0x4E2D);
}

TEST_F(GbkTest, NewArrays)
{
    std::unique_ptr<unsigned short[]> u16(VORKMBTranscodeU8("a\xE4\xB8\xAD"));
    ASSERT_NE(u16, nullptr);
    EXPECT_EQ(U16String(u16.get()), U16({'a', 0x4E2D}));
    std::unique_ptr<char[]> u8(VORKMBTranscodeU8(u16.get()));
    EXPECT_STREQ(u8.get(), "a\xE4\xB8\xAD");
    std::unique_ptr<char[]> cp(VORKMBTranscodeCodePage(u16.get()));
    EXPECT_STREQ(cp.get(), "a\xD6\xD0");
    std::unique_ptr<unsigned short[]> back(VORKMBTranscodeCodePage(cp.get()));
    EXPECT_EQ(U16String(back.get()), U16({'a', 0x4E2D}));
    std::unique_ptr<char[]> generic(VORKMBTranscodeGeneric(u16.get()));
    EXPECT_STREQ(generic.get(), "a\xE4\xB8\xAD");
    EXPECT_EQ(VORKMBTranscodeU8(static_cast<const char*>(nullptr)), nullptr);
    EXPECT_EQ(VORKMBTranscodeCodePage(static_cast<const unsigned short*>(nullptr)), nullptr);
}

TEST_F(EncodingTest, NewArrayInAWideCodePageIsNotCut)
{
    Internal::SetDefaultCodePage("UTF-8");
    const unsigned short euros[] = {0x20AC, 0x20AC, 0x20AC, 0};
    std::unique_ptr<char[]> cp(VORKMBTranscodeCodePage(euros));
    EXPECT_STREQ(cp.get(), "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC");
}
