// Conversions: the fitting rule, cutting at character boundaries, bad input,
// the string and new-array forms and the generic routes.
#include "EncodingTestSupport.h"

using namespace ZRMemTest;

// A counted text that fits with room gets one space behind it, a terminated
// one a NUL; an exact fit gets nothing; a cut reports 1. Both unit sizes.
TEST_F(Cp1252Test, FittingRuleCountedAndTerminated)
{
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 6, "abcd", 4), "4 0|abcd ZZ");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 6, "abcd", -1), "4 0|abcd\\0ZZ");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 4, "abcd", 4), "4 0|abcdZ");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 5, "abcd", -1), "4 0|abcd\\0Z");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 5, "abcdefghi", -1), "4 1|abcd\\0Z");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 5, "abcdefghi", 9), "5 1|abcdeZ");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 3, "", 0), "0 0| ZZZ")
        << "an empty text gets its space";
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 1, "", -1), "0 0|\\0Z");
    EXPECT_EQ(Fixed(VORKMB8to16, 2, "a", 1), "1 0|0061 0020 7777") << "one unit of room is room";
    EXPECT_EQ(Fixed(VORKMB8to16, 3, "abcd"), "2 1|0061 0062 0000 7777");
    // A capacity of 0 or less, or a null target, measures and writes nothing.
    EXPECT_EQ(Fixed(VORKMB8to16, -5, "abc", 3), "3 1|7777");
    EXPECT_EQ(Fixed(VORKMB16to8, 0, U16({0x20AC}).c_str()), "3 1|Z");
    int code = -1;
    EXPECT_EQ(VORKMB8to16(nullptr, 10, "\xE2\x82\xACxy", -1, &code), 3);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(VORKMB8to16(nullptr, 0, nullptr, 5, nullptr), 0) << "a null source is empty";
}

// A cut never splits a character: not a surrogate pair, a UTF-8 sequence or a
// double-byte character; the bytes behind the text become spaces.
TEST_F(GbkTest, CuttingAtCharacterBoundaries)
{
    EXPECT_EQ(Fixed(VORKMB8to16, 2, "a\xF0\x9F\x98\x80", 5), "1 1|0061 0020 7777");
    EXPECT_EQ(Fixed(VORKMB16to8, 4, U16({0x20AC, 0x20AC}).c_str(), 2), "3 1|\xE2\x82\xAC Z");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 4, "\xD6\xD0\xD6\xD0", 4), "3 1|\xE4\xB8\xAD Z");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 2, "\xD6\xD0", 2), "0 1|  Z");
    EXPECT_EQ(Fixed(VORKMBCodePageto8, nullptr, 3, "\xD6\xD0\xD6\xD0", 4), "3 1|\xE4\xB8\xADZ");
    EXPECT_EQ(Fixed(VORKMB16toCodePage, nullptr, 5, U16({'a', 0x4E2D, 0x4E2D}).c_str()),
              "3 1|a\xD6\xD0\\0ZZ");
    EXPECT_EQ(Fixed(VORKMB8toCodePage, nullptr, 3, "\xE4\xB8\xAD\xE4\xB8\xAD", 6),
              "2 1|\xD6\xD0 Z");
}

// Ill-formed UTF-8 or UTF-16 converts to nothing and reports 3.
TEST_F(EncodingTest, IllFormedUnicodeGivesTroubleAndAnEmptyText)
{
    const char* bad[] = {"a\x80",    "\xC0\xAF",         "\xE0\x80\xAF", "\xED\xA0\x80",
                         "\xE2\x82", "\xF4\x90\x80\x80", "\xFF"};
    for (const char* s : bad) {
        SCOPED_TRACE(testing::PrintToString(s));
        EXPECT_EQ(Fixed(VORKMB8to16, 2, s), "0 3|0000 7777 7777");
        U16String out = U16({'x'});
        EXPECT_EQ(Out(VORKMBU8ToU16(out, s), out), "3|");
    }
    const U16String lone = U16({'a', 0xDC00, 'b'});
    EXPECT_EQ(Fixed(VORKMB16to8, 3, lone.c_str(), 3), "0 3| ZZZ");
    std::string out = "x";
    EXPECT_EQ(Out(VORKMBU16ToU8(out, U16({0xD800})), out), "3|");
    EXPECT_EQ(Take(VORKMBTranscodeU8(lone.c_str())), "");
}

// In a code page wider than UTF-8 (UTF-8 itself, that of the C locale, with
// U+FFFD for a bad byte) the string form's room can be short, the new array's
// is not.
TEST_F(CLocaleTest, RoomInAWideCodePage)
{
    std::string out;
    EXPECT_EQ(VORKMBU8ToCodePage(nullptr, out, "\xFF"), 1)
        << "U+FFFD takes three bytes of a room of two";
    EXPECT_EQ(Fixed(VORKMB8toCodePage, nullptr, 8, "a\xFF"), "4 3|a\xEF\xBF\xBD\\0ZZZZ");
    EXPECT_EQ(Fixed(VORKMB8toCodePage, nullptr, 2, "\xFF", 0), "0 0| ZZ") << "nothing is read";
    EXPECT_EQ(Fixed(VORKMB8toCodePage, nullptr, 8, "\xC2\xA9\xE0\xA4\x85"),
              "5 0|\xC2\xA9\xE0\xA4\x85\\0ZZZ");
    EXPECT_EQ(Take(VORKMBTranscodeCodePage(U16({0x20AC, 0x20AC, 0x20AC}).c_str())),
              "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC");
}

TEST_F(GbkTest, StringAndNewArrayForms)
{
    U16String u16;
    std::string u8, cp;
    EXPECT_EQ(Out(VORKMBU8ToU16(u16, "a\xE4\xB8\xAD\xF0\x9F\x98\x80"), u16),
              "0|0061 4E2D D83D DE00");
    EXPECT_EQ(Out(VORKMBU16ToU8(u8, u16), u8), "0|a\xE4\xB8\xAD\xF0\x9F\x98\x80");
    EXPECT_EQ(Out(VORKMBU8ToCodePage(nullptr, cp, "a\xE4\xB8\xAD"), cp), "0|a\xD6\xD0");
    EXPECT_EQ(Out(VORKMBCodePageToU8(nullptr, u8, cp), u8), "0|a\xE4\xB8\xAD");
    EXPECT_EQ(Out(VORKMBCodePageToU16(nullptr, u16, cp), u16), "0|0061 4E2D");
    EXPECT_EQ(Out(VORKMBU16ToCodePage(nullptr, cp, U16({0x4E2D, 0x0E01})), cp), "3|\xD6\xD0?")
        << "no Thai in GBK";
    std::string same = "a\xE4\xB8\xAD";
    EXPECT_EQ(Out(VORKMBU8ToCodePage(nullptr, same, same), same), "0|a\xD6\xD0")
        << "target and source in one";
    // GB18030 takes four bytes for U+00C0, more than the room of one code
    // page byte per UTF-8 byte.
    Converter gb18030 = Open("gb18030");
    EXPECT_EQ(Out(VORKMBU8ToCodePage(gb18030.get(), cp, "\xC3\x80"), cp), "1|");
    EXPECT_EQ(Out(VORKMBU8ToCodePage(gb18030.get(), cp, ""), cp), "0|");
    // ISO-2022-JP shifts sets by escape sequences: "a\u6F22" over and over takes
    // 4.5 bytes a unit, more than four.
    Converter jis = Open("ISO-2022-JP");
    U16String mixed;
    for (int i = 0; i < 50; ++i)
        mixed += U16({'a', 0x6F22});
    EXPECT_EQ(VORKMBU16ToCodePage(jis.get(), cp, mixed), 0);
    EXPECT_EQ(cp.size(), 450u);
    // New arrays: terminated, null for a null source.
    const U16String az = U16({'a', 0x4E2D});
    EXPECT_EQ(Take(VORKMBTranscodeU8("ab")), "0061 0062");
    EXPECT_EQ(Take(VORKMBTranscodeU8(az.c_str())), "a\xE4\xB8\xAD");
    EXPECT_EQ(Take(VORKMBTranscodeCodePage(az.c_str())), "a\xD6\xD0");
    EXPECT_EQ(Take(VORKMBTranscodeCodePage("a\xD6\xD0")), "0061 4E2D");
    EXPECT_EQ(Take(VORKMBTranscodeGeneric(az.c_str())), "a\xE4\xB8\xAD");
    EXPECT_EQ(Take(VORKMBTranscodeGeneric("a\xE4\xB8\xAD")), "0061 4E2D");
    EXPECT_EQ(Take(VORKMBTranscodeU8(static_cast<const char*>(nullptr))), "null");
    EXPECT_EQ(Take(VORKMBTranscodeCodePage(static_cast<const unsigned short*>(nullptr))), "null");
}

// Texts too long for the stack: into a target that holds stale text longer
// than the room, into one far shorter, and into the source itself.
TEST_F(GbkTest, LongTextsWhateverTheTargetHeld)
{
    std::string u8, gbk;
    U16String u16;
    for (int i = 0; i < 3000; ++i) {
        u8 += "a\xE4\xB8\xAD";
        gbk += "a\xD6\xD0";
        u16 += U16({'a', 0x4E2D});
    }
    U16String toU16(20000, 'Z');
    EXPECT_EQ(VORKMBU8ToU16(toU16, u8), 0);
    EXPECT_TRUE(toU16 == u16);
    EXPECT_EQ(VORKMBU8ToU16(toU16, u8), 0) << "now shorter than the room";
    EXPECT_TRUE(toU16 == u16);
    std::string toU8(40000, 'Z');
    EXPECT_EQ(VORKMBCodePageToU8(nullptr, toU8, gbk), 0);
    EXPECT_EQ(toU8, u8);
    EXPECT_EQ(VORKMBCodePageToU8(nullptr, toU8, gbk), 0);
    EXPECT_EQ(toU8, u8);
    std::string same = u8;
    EXPECT_EQ(VORKMBU8ToCodePage(nullptr, same, same), 0);
    EXPECT_EQ(same, gbk);
}

// In UTF-8 mode generic text is UTF-8 and no converter is consulted where
// nothing is converted; in code page mode it is code page text.
TEST_F(GbkTest, GenericRoutes)
{
    Converter cp1252 = Open("windows-1252");
    U16String u16;
    std::string s;
    EXPECT_EQ(Out(VORKMBGenericToU16(cp1252.get(), u16, "\xC3\xA9"), u16), "0|00E9");
    EXPECT_EQ(Out(VORKMBGenericToU8(cp1252.get(), s, "\xFF"), s), "0|\xFF");
    EXPECT_EQ(Out(VORKMBCodePageToGeneric(cp1252.get(), s, "\xE9"), s), "0|\xC3\xA9");
    EXPECT_EQ(Out(VORKMBU16ToGeneric(s, U16({0x4E2D})), s), "0|\xE4\xB8\xAD");
    // Byte copy: reports 0 even when it cuts inside a character; in
    // terminated mode it fills the capacity and puts the NUL behind it.
    EXPECT_EQ(Fixed(VORKMBGenericto8, 2, "\xE4\xB8\xAD", 3), "2 0|\xE4\xB8Z");
    EXPECT_EQ(Fixed(VORKMBGenericto8, 4, "abcdef"), "4 0|abcd\\0");
    EXPECT_EQ(Fixed(VORKMB8toGeneric, 3, "abcdef"), "3 0|abc\\0");
    EXPECT_EQ(Fixed(VORKMB8toGeneric, 5, "ab"), "2 0|ab\\0ZZZ");
    EXPECT_EQ(Fixed(VORKMBGenericto8, 0, "abcdef"), "6 0|Z");
    EXPECT_EQ(Fixed(VORKMBGenericto8, 2, "abc", 0), "0 0|ZZZ");

    SetUTF8mode(0);
    EXPECT_EQ(Out(VORKMBGenericToU16(u16, "\xD6\xD0"), u16), "0|4E2D");
    EXPECT_EQ(Out(VORKMBGenericToU8(s, "\xD6\xD0"), s), "0|\xE4\xB8\xAD");
    EXPECT_EQ(Out(VORKMBU8ToGeneric(s, "\xE4\xB8\xAD"), s), "0|\xD6\xD0");
    EXPECT_EQ(Out(VORKMBGenericToCodePage(cp1252.get(), s, "\xD6\xD0"), s), "0|\xD6\xD0");
    EXPECT_EQ(Fixed(VORKMBGenerictoCodePage, nullptr, 3, "ab"), "2 0|ab\\0Z");
    EXPECT_EQ(Fixed(VORKMBGenerictoCodePage, nullptr, 4, "abcdef"), "4 0|abcd\\0");
    EXPECT_EQ(Fixed(VORKMBCodePagetoGeneric, cp1252.get(), 1, "\xD6\xD0"), "1 0|\xD6\\0");
    EXPECT_EQ(Fixed(VORKMB16toGeneric, 3, U16({0x4E2D}).c_str()), "2 0|\xD6\xD0\\0Z");
    EXPECT_EQ(Fixed(VORKMBGenericto16, 2, "\xD6\xD0"), "1 0|4E2D 0000 7777");
}
