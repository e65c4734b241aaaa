// String primitives of code page text, in a double-byte and a single-byte
// code page, and the generic forms that follow the UTF-8 mode.
#include "EncodingTestSupport.h"

using namespace ZRMemTest;

// GBK: U+4E2D is D6 D0, U+6587 is CE C4.
TEST_F(GbkTest, SteppingAndCopyByTheLocalesLeadBytes)
{
    EXPECT_EQ(VORKMBIsLeadByte_C(0xD6), 1);
    EXPECT_EQ(VORKMBIsLeadByte_C(0x81), 1);
    EXPECT_EQ(VORKMBIsLeadByte_C('a'), 0);
    EXPECT_EQ(VORKMBIsLeadByte_C(0x1D6), 0);
    const char text[] = "a\xD6\xD0\xCE\xC4z";
    EXPECT_EQ(VORKMBmbclen_C(text + 1), 2u);
    EXPECT_EQ(VORKMBmbclen_C(text), 1u);
    EXPECT_EQ(VORKMBmbclen_C("\xD6"), 1u) << "a lead byte before the terminator stands alone";
    EXPECT_EQ(VORKMBstrinc_C(text + 1), text + 3);
    EXPECT_EQ(VORKMBmblen_C(text + 1, 2), 2);
    EXPECT_EQ(VORKMBmblen_C(text + 1, 1), -1);
    EXPECT_EQ(VORKMBmblen_C("\xFF", 1), -1);
    // A trail byte belongs to its lead, both for a start and a step back.
    const size_t starts[] = {0, 1, 1, 3, 3, 5, 6}; // for the indexes 0 to 6
    for (size_t i = 0; i < 7; ++i)
        EXPECT_EQ(VORKMBFindStart_C(text, i), starts[i]) << i;
    EXPECT_EQ(VORKMBFindStart_C(text, 99), 6u);
    EXPECT_EQ(VORKMBFindStart_C(nullptr, 3), 0u);
    const int previous[] = {0, 0, 1, 1, 3, 3, 5}; // of the positions 0 to 6, at starts
    for (int i : {0, 1, 3, 5, 6})
        EXPECT_EQ(VORKMBAnsiPrev_C(text, text + i), text + previous[i]) << i;
    // A copy keeps whole characters, drops a cut lead byte and may overlap.
    EXPECT_EQ(Copied(VORKMBstrncpy_C, "\xD6\xD0\xCE\xC4", 3), "\xD6\xD0\\0ZZZZZ");
    EXPECT_EQ(Copied(VORKMBstrncpy_C, "ab\xD6", 5), "ab\\0\\0\\0ZZZ");
    EXPECT_EQ(Copied(VORKMBstrncpy_C, nullptr, 2), "ZZZZZZZZ")
        << "a null source leaves the target alone";
    char overlap[] = "xx\xD6\xD0z";
    VORKMBstrncpy_C(overlap, overlap + 2, 4);
    EXPECT_EQ(std::string(overlap, 4), std::string("\xD6\xD0z\0", 4));
}

TEST_F(Cp1252Test, NoLeadBytesInASingleByteCodePage)
{
    for (unsigned b = 0x80; b <= 0xFF; ++b)
        EXPECT_EQ(VORKMBIsLeadByte_C(b), 0) << b;
    EXPECT_EQ(VORKMBmbclen_C("\xE4\xE4"), 1u);
    EXPECT_EQ(VORKMBFindStart_C("\xE4\xE4\xE4", 1), 1u);
    int cp = 0;
    EXPECT_EQ(VORKMBU32Get_C(&cp, "\x80", 0, -1), 1);
    EXPECT_EQ(cp, 0x20AC);
    EXPECT_EQ(VORKMBqstricmp_C("\xC4rger", -1, "\xE4RGER", -1, nullptr), 1);
    EXPECT_EQ(Copied(VORKMBstrncpy_C, "\xE4\xF6\xFC\xDF", 3), "\xE4\xF6\xFCZZZZZ");
}

// Search and sets compare at character starts only: 0xD0 is only a trail
// byte here, and 'P' (0x50) is the trail of D6 50.
TEST_F(GbkTest, SearchAndCodePointsAtCharacterStarts)
{
    const char text[] = "\xD6\xD0\xD6PzP";
    EXPECT_EQ(VORKMBstrchr_C(text, 0xD0), nullptr);
    EXPECT_EQ(VORKMBstrchr_C(text, 'P'), text + 5);
    EXPECT_EQ(VORKMBstrrchr_C(text, 'P'), text + 5);
    EXPECT_EQ(VORKMBstrchr_C(text, 'z'), text + 4);
    EXPECT_EQ(VORKMBstrchr_C(text, 0), text + 6);
    EXPECT_EQ(VORKMBstrchr_C(text, 'q'), nullptr);
    const char cut[] = "a\xD6";
    EXPECT_EQ(VORKMBstrrchr_C(cut, 0xD6), cut + 1)
        << "a lead byte before the terminator stands alone";
    // Sets have no member limit; a bad byte is one raw unit.
    std::string set;
    for (int i = 0; i < 64; ++i)
        set += static_cast<char>('0' + i);
    set += "\xD6\xD0";
    EXPECT_EQ(VORKMBstrcspn_C("!~\xD6\xD0", set.c_str()), 2u);
    EXPECT_EQ(VORKMBstrcspn_C("!!", set.c_str()), 2u);
    EXPECT_EQ(VORKMBstrcspn_C("!\x81\x7Fg", set.c_str()), 3u);
    EXPECT_EQ(VORKMBstrcspn_C("\xCE\xC4\xD6\xD0", "\xD6\xD0"), 2u);
    // Code points through the default converter.
    int cp = -1;
    EXPECT_EQ(VORKMBU32Get_C(&cp, "a\xD6\xD0", 1, -1), 2);
    EXPECT_EQ(cp, 0x4E2D);
    EXPECT_EQ(VORKMBU32Get_C(&cp, "a\xD6\xD0", 0, 0), 0) << "start equals end";
    EXPECT_EQ(cp, 0);
    EXPECT_EQ(VORKMBU32Get_C(&cp, "a\xD6\xD0", 1, 2), -1) << "the end cuts the character";
    EXPECT_EQ(VORKMBU32Get_C(&cp, "\x81\x7F", 0, -1), -1);
    EXPECT_EQ(cp, 0);
    EXPECT_EQ(VORKMBU32Get_C(&cp, "", 0, -1), 0);
    EXPECT_EQ(VORKMBU32Get_C(&cp, "ab", -1, -1), -1);
    EXPECT_EQ(VORKMBU32Get_C(nullptr, "ab", 0, -1), 1);
}

TEST_F(GbkTest, GenericFormsFollowTheMode)
{
    const char utf8[] = "\xE4\xB8\xADz"; // U+4E2D in UTF-8
    const char gbk[] = "\xD6\xD0z";
    EXPECT_EQ(VORKMBstrinc_A(utf8), utf8 + 3);
    EXPECT_EQ(VORKMBstrchr_A(utf8, 0x4E2D), utf8);
    EXPECT_EQ(VORKMBstrnicmp_A("\xC3\x84", "\xC3\xA4", 2), 0);
    SetUTF8mode(0);
    EXPECT_EQ(VORKMBstrinc_A(gbk), gbk + 2);
    EXPECT_EQ(VORKMBstrchr_A(gbk, 'z'), gbk + 2);
    EXPECT_EQ(VORKMBstrrchr_A(gbk, 0xD0), nullptr);
    EXPECT_EQ(VORKMBstrcspn_A(gbk, "z"), 2u);
    EXPECT_EQ(VORKMBAnsiPrev_A(gbk, gbk + 2), gbk);
    EXPECT_EQ(VORKMBqstricmp_A("AB", -1, "ab", -1, nullptr), 1);
    EXPECT_EQ(Copied(VORKMBstrncpy_A, gbk, 1), "\\0ZZZZZZZ");
}
