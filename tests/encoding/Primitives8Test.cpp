// String primitives of UTF-8 text: stepping, trimming, comparison, search.
#include "EncodingTestSupport.h"

#include <cstring>

using namespace ZRMemTest;

namespace {
const char kEuro[] = "\xE2\x82\xAC";     // U+20AC, three bytes
const char kGrin[] = "\xF0\x9F\x98\x80"; // U+1F600, four bytes
} // namespace

// mbclen goes by the lead byte alone, cut short at the NUL; mblen counts only
// a valid character and gives -1 for anything else; copies keep whole ones.
TEST(Utf8Text, LengthPreviousAndCopy)
{
    const struct {
        const char* text;
        size_t byLead;
        int valid;
    } cases[] = {{"a", 1, 1},
                 {"\xC2\xA9", 2, 2},
                 {kEuro, 3, 3},
                 {"\xE0\xA4\x85", 3, 3},
                 {kGrin, 4, 4},
                 {"\xED\x9F\xBF", 3, 3},     // U+D7FF, the last before the surrogates
                 {"\xF4\x8F\xBF\xBD", 4, 4}, // U+10FFFD
                 {"\xE2", 1, -1},
                 {"\xE2\x82", 2, -1},
                 {"\x80", 1, -1},
                 {"\xF8\x80\x80\x80\x80", 1, -1}};
    for (const auto& c : cases) {
        EXPECT_EQ(VORKMBmbclen_8(c.text), c.byLead) << testing::PrintToString(c.text);
        EXPECT_EQ(VORKMBmblen_8(c.text, std::strlen(c.text)), c.valid)
            << testing::PrintToString(c.text);
    }
    // Two overlong forms, a surrogate, above U+10FFFF, a missing trail byte,
    // five-byte forms and the noncharacters U+FDD0, U+FFFE and U+1FFFF.
    for (const char* s :
         {"\xC0\x80", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x41\x41",
          "\xF8\x88\x80\x80", "\xFE", "\xEF\xB7\x90", "\xEF\xBF\xBE", "\xF0\x9F\xBF\xBF"})
        EXPECT_EQ(VORKMBmblen_8(s, std::strlen(s)), -1) << testing::PrintToString(s);
    EXPECT_EQ(VORKMBmblen_8(kEuro, 2), -1) << "fewer bytes available than the character needs";
    EXPECT_EQ(VORKMBmblen_8("a", 0), 0);
    EXPECT_EQ(VORKMBmblen_8("", 4), 0);
    EXPECT_EQ(VORKMBmblen_8(nullptr, 4), 0);
    EXPECT_EQ(VORKMBmbclen_8(nullptr), 0u);
    EXPECT_EQ(VORKMBstrinc_8(kEuro), kEuro + 3);
    // Stepping back lands on a character's start, or one byte back from a
    // lone trail byte or from inside a character.
    const char text[] = "a\xE2\x82\xAC\x80z";
    const size_t previous[] = {0, 0, 1, 2, 1, 4}; // for the indexes 0 to 5
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(VORKMBPreviousIndex_8(text, i), previous[i]) << i;
    EXPECT_EQ(VORKMBPreviousIndex_8("a\xEF\xB7\x90", 4), 3u) << "behind a noncharacter: one back";
    EXPECT_EQ(VORKMBAnsiPrev_8(text, text + 4), text + 1);
    EXPECT_EQ(VORKMBAnsiPrev_8(text, text), text);
    EXPECT_EQ(VORKMBAnsiPrev_8(text, nullptr), nullptr);
    // A copy ends in a whole character: a cut one, a noncharacter or
    // ill-formed bytes at the end are dropped; a full target has no terminator.
    EXPECT_EQ(Copied(VORKMBstrncpy_8, (std::string(kEuro) + kEuro).c_str(), 4),
              "\xE2\x82\xAC\\0ZZZZ");
    EXPECT_EQ(Copied(VORKMBstrncpy_8, "abc", 3), "abcZZZZZ");
    EXPECT_EQ(Copied(VORKMBstrncpy_8, "ab\xEF\xBF\xBE", 8), "ab\\0\\0\\0\\0\\0\\0");
    EXPECT_EQ(Copied(VORKMBstrncpy_8, "a\x80\x80", 8), "a\\0\\0\\0\\0\\0\\0\\0");
    EXPECT_EQ(Copied(VORKMBstrncpy_8, nullptr, 3), "\\0\\0\\0ZZZZZ");
    EXPECT_EQ(Copied(VORKMBstrncpy_8, "abc", 0), "ZZZZZZZZ");
    EXPECT_EQ(VORKMBstrncpy_8(nullptr, "abc", 3), nullptr);
}

// Case-blind by code point; an ill-formed byte compares as its raw value and
// is reported; qstricmp gives 1 for equal.
TEST(Utf8Text, CaseBlindComparisonAndSearch)
{
    int bad = -1;
    EXPECT_EQ(VORKMBCompare_8("\xC3\x84XY", -1, "\xC3\xA4xy", -1, &bad), 0);
    EXPECT_EQ(bad, 0);
    EXPECT_EQ(VORKMBstrnicmp_8("Hello", "HELP", 3), 0);
    EXPECT_EQ(VORKMBstrnicmp_8("Hello", "HELP", 4), -1);
    EXPECT_EQ(VORKMBqstricmp_8("ABC", -1, "abc", -1, &bad), 1);
    EXPECT_EQ(VORKMBqstricmp_8("ABC", -1, "abd", -1, &bad), 0);
    EXPECT_EQ(VORKMBqstricmp_8("abcX", 3, "ABCY", 3, nullptr), 1);
    EXPECT_EQ(VORKMBCompare_8("a\x80", -1, "a\x81", -1, &bad), -1);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(VORKMBCompare_8("\xE2\x82", -1, "\xE2\x82", -1, &bad), 0);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(VORKMBCompare_8("\xFF", -1, kEuro, -1, &bad), -1) << "0xFF against U+20AC";
    EXPECT_EQ(VORKMBCompare_8(nullptr, -1, "a", -1, &bad), -1);
    // Search by code point and by sets of code points.
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
    EXPECT_EQ(VORKMBstrcspn_8(s, "x\x80\x62"), text.size()) << "the set ends at its first bad byte";
    // The set holds 64 members: a 65th is not looked at.
    std::string set;
    for (char c = '0'; c < '0' + 64; ++c)
        set += c;
    set += kEuro;
    EXPECT_EQ(VORKMBstrcspn_8((std::string("!!") + kEuro).c_str(), set.c_str()), 5u);
    EXPECT_EQ(VORKMBstrcspn_8("!!0", set.c_str()), 2u);
}
