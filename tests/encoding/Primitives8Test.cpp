// String primitives of UTF-8 text: stepping, trimming, comparison, search.
#include "EncodingTestSupport.h"

#include <cstring>

using namespace ZRMem;
using namespace ZRMemTest;

namespace {
const char kEuro[] = "\xE2\x82\xAC";       // U+20AC, three bytes
const char kGrin[] = "\xF0\x9F\x98\x80";   // U+1F600, four bytes
} // namespace

TEST(Utf8Stepping, CharacterLengthByLeadByte)
{
    EXPECT_EQ(VORKMBmbclen_8("a"), 1u);
    EXPECT_EQ(VORKMBmbclen_8("\xC3\xA9"), 2u);
    EXPECT_EQ(VORKMBmbclen_8(kEuro), 3u);
    EXPECT_EQ(VORKMBmbclen_8(kGrin), 4u);
    EXPECT_EQ(VORKMBmbclen_8("\xE2"), 1u) << "cut short at the NUL";
    EXPECT_EQ(VORKMBmbclen_8("\xE2\x82"), 2u);
    EXPECT_EQ(VORKMBmbclen_8("\xF8\x80\x80\x80\x80"), 1u);
    EXPECT_EQ(VORKMBmbclen_8("\x80"), 1u);
    EXPECT_EQ(VORKMBmbclen_8(nullptr), 0u);
    const char text[] = "a\xE2\x82\xAC" "b";
    EXPECT_EQ(VORKMBstrinc_8(text), text + 1);
    EXPECT_EQ(VORKMBstrinc_8(text + 1), text + 4);
}

TEST(Utf8Stepping, ValidCharacterLength)
{
    EXPECT_EQ(VORKMBmblen_8(nullptr, 4), 0);
    EXPECT_EQ(VORKMBmblen_8("", 4), 0);
    EXPECT_EQ(VORKMBmblen_8("a", 0), 0);
    EXPECT_EQ(VORKMBmblen_8("a", 1), 1);
    EXPECT_EQ(VORKMBmblen_8("\xC3\xA9", 2), 2);
    EXPECT_EQ(VORKMBmblen_8(kEuro, 3), 3);
    EXPECT_EQ(VORKMBmblen_8("\xEF\xBC\xA1", 3), 3);
    EXPECT_EQ(VORKMBmblen_8(kGrin, 4), 4);
    // Ill-formed of every kind, and noncharacters.
    const char* bad[] = {
        "\x80",              // lone trail byte
        "\xC0\x80",          // overlong NUL
        "\xE0\x80\xAF",      // overlong
        "\xED\xA0\x80",      // surrogate
        "\xF4\x90\x80\x80",  // above U+10FFFF
        "\xE2\x82",          // truncated
        "\xE2\x41\x41",      // missing trail
        "\xF8\x88\x80\x80",  // five-byte form
        "\xFE",
        "\xEF\xB7\x90",      // U+FDD0
        "\xEF\xBF\xBE",      // U+FFFE
        "\xF0\x9F\xBF\xBF",  // U+1FFFF
    };
    for (const char* s : bad)
        EXPECT_EQ(VORKMBmblen_8(s, std::strlen(s)), -1) << testing::PrintToString(s);
    EXPECT_EQ(VORKMBmblen_8(kEuro, 2), -1) << "fewer bytes available than the character needs";
}

TEST(Utf8Stepping, PreviousCharacter)
{
    const char text[] = "a\xE2\x82\xAC\x80" "b";
    EXPECT_EQ(VORKMBPreviousIndex_8(text, 0), 0u);
    EXPECT_EQ(VORKMBPreviousIndex_8(text, 1), 0u);
    EXPECT_EQ(VORKMBPreviousIndex_8(text, 4), 1u) << "behind the euro sign: its start";
    EXPECT_EQ(VORKMBPreviousIndex_8(text, 5), 4u) << "behind a lone trail byte: one back";
    EXPECT_EQ(VORKMBPreviousIndex_8(text, 3), 2u) << "inside a character: one back";
    const char nonchar[] = "a\xEF\xB7\x90";
    EXPECT_EQ(VORKMBPreviousIndex_8(nonchar, 4), 3u);
    EXPECT_EQ(VORKMBAnsiPrev_8(text, text + 4), text + 1);
    EXPECT_EQ(VORKMBAnsiPrev_8(text, text), text);
    EXPECT_EQ(VORKMBAnsiPrev_8(text, nullptr), nullptr);
}

TEST(Utf8Copy, NeverLeavesPartOfACharacter)
{
    char target[8];
    std::memset(target, 'Z', sizeof target);
    const std::string euros = std::string(kEuro) + kEuro;
    EXPECT_EQ(VORKMBstrncpy_8(target, euros.c_str(), 4), target);
    EXPECT_EQ(std::string(target, 4), std::string(kEuro) + '\0');
    EXPECT_EQ(target[4], 'Z') << "nothing beyond the size";

    std::memset(target, 'Z', sizeof target);
    VORKMBstrncpy_8(target, "abc", 3);
    EXPECT_EQ(std::string(target, 4), "abcZ") << "a full target has no terminator";

    std::memset(target, 'Z', sizeof target);
    VORKMBstrncpy_8(target, "ab\xEF\xBF\xBE", 8);
    EXPECT_EQ(std::string(target, 8), std::string("ab\0\0\0\0\0\0", 8)) << "a trailing noncharacter goes";

    std::memset(target, 'Z', sizeof target);
    VORKMBstrncpy_8(target, "a\x80\x80", 8);
    EXPECT_EQ(std::string(target, 3), std::string("a\0\0", 3)) << "trailing ill-formed bytes go";

    std::memset(target, 'Z', sizeof target);
    VORKMBstrncpy_8(target, nullptr, 3);
    EXPECT_EQ(std::string(target, 4), std::string("\0\0\0Z", 4));
    EXPECT_EQ(VORKMBstrncpy_8(target, "abc", 0), target);
    EXPECT_EQ(VORKMBstrncpy_8(nullptr, "abc", 3), nullptr);
}

TEST(Utf8Comparison, CaseBlindByCodePoint)
{
    int bad = -1;
    EXPECT_EQ(VORKMBCompare_8("\xC3\x84" "BC", -1, "\xC3\xA4" "bc", -1, &bad), 0);
    EXPECT_EQ(bad, 0);
    EXPECT_EQ(VORKMBstrnicmp_8("Hello", "HELP", 3), 0);
    EXPECT_EQ(VORKMBstrnicmp_8("Hello", "HELP", 4), -1);
    EXPECT_EQ(VORKMBstrnicmp_8("abc", "ab", 5), 1);
    EXPECT_EQ(VORKMBqstricmp_8("ABC", -1, "abc", -1, &bad), 1) << "qstricmp: 1 for equal";
    EXPECT_EQ(VORKMBqstricmp_8("ABC", -1, "abd", -1, &bad), 0);
    EXPECT_EQ(VORKMBqstricmp_8("abcX", 3, "ABCY", 3, nullptr), 1);
    // Ill-formed bytes compare by their raw value and are reported.
    EXPECT_EQ(VORKMBCompare_8("a\x80", -1, "a\x81", -1, &bad), -1);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(VORKMBCompare_8("\xE2\x82", -1, "\xE2\x82", -1, &bad), 0);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(VORKMBCompare_8("\xFF", -1, kEuro, -1, &bad), -1) << "0xFF against U+20AC";
    EXPECT_EQ(VORKMBCompare_8(nullptr, -1, "a", -1, &bad), -1);
}

TEST(Utf8Search, CodePointsAndSets)
{
    const std::string text = std::string("a") + kEuro + "b" + kEuro + kGrin;
    const char* s = text.c_str();
    EXPECT_EQ(VORKMBstrchr_8(s, 'b'), s + 4);
    EXPECT_EQ(VORKMBstrchr_8(s, 0x20AC), s + 1);
    EXPECT_EQ(VORKMBstrrchr_8(s, 0x20AC), s + 5);
    EXPECT_EQ(VORKMBstrchr_8(s, 0x1F600), s + 8);
    EXPECT_EQ(VORKMBstrchr_8(s, 0xE9), nullptr);
    EXPECT_EQ(VORKMBstrchr_8(s, 0), s + text.size());
    EXPECT_EQ(VORKMBstrchr_8("", 0x20AC), nullptr);
    EXPECT_EQ(VORKMBstrrchr_8("\xE2\x82", 0x20AC), nullptr) << "a cut sequence is not over-read";

    EXPECT_EQ(VORKMBstrcspn_8(s, "xb"), 4u);
    EXPECT_EQ(VORKMBstrcspn_8(s, kGrin), 8u);
    EXPECT_EQ(VORKMBstrcspn_8(s, "xyz"), text.size());
    EXPECT_EQ(VORKMBstrcspn_8("a\x80z", "z"), 2u) << "an ill-formed byte steps one";
    EXPECT_EQ(VORKMBstrcspn_8(s, "x\x80" "b"), text.size()) << "the set ends at its first bad byte";
}

TEST(Utf8Search, SetHoldsAtMost64Members)
{
    std::string set;
    for (char c = '0'; c < '0' + 64; ++c)
        set += c;
    set += "\xE2\x82\xAC";  // the 65th member
    EXPECT_EQ(VORKMBstrcspn_8((std::string("!!") + kEuro).c_str(), set.c_str()), 5u);
    EXPECT_EQ(VORKMBstrcspn_8("!!0", set.c_str()), 2u);
}
