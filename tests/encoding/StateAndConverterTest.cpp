// Encoding state, converters and code-page names.
#include "EncodingTestSupport.h"
#include "ZRPlatform.h"

using namespace ZRMemTest;

// The process starts in UTF-8 mode; the default converter is made once, on
// first need, for the character locale; a null name opens the locale's code
// page as a converter of the caller's own, before and after.
TEST_F(GbkTest, DefaultConverterIsCreatedOnceAndCounted)
{
    REQUIRE_FRESH_PROCESS();
    EXPECT_EQ(qUTF8mode(), 1);
    SetUTF8mode(0);
    EXPECT_EQ(qUTF8mode(), 0);
    SetUTF8mode(2);
    EXPECT_EQ(qUTF8mode(), 1);
    Converter early = Open(nullptr);
    EXPECT_EQ(NameOf(early.get()), IcuName("GBK"));
    EXPECT_EQ(VORKMBDefaultConverterID(), 0);
    UConverter* def = VORKMBGetDefaultConverter();
    ASSERT_NE(def, nullptr);
    EXPECT_EQ(NameOf(def), IcuName("GBK"));
    ASSERT_NE(std::setlocale(LC_ALL, "en_US.CP1252"), nullptr);
    EXPECT_EQ(VORKMBGetDefaultConverter(), def) << "a later locale changes nothing";
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);
    Converter late = Open(nullptr);
    EXPECT_NE(late.get(), def);
    EXPECT_EQ(NameOf(late.get()), NameOf(def));
}

// A default converter that does not open (ICU does not know the locale's
// code set) is tried again at each need, each try counted; everything that
// needs it reports trouble instead of crashing. Once the host sets a locale
// that ICU knows, the next need opens it.
TEST_F(UnknownCodeSetTest, FailedDefaultConverterIsRetriedAndCounted)
{
    REQUIRE_FRESH_PROCESS();
    EXPECT_EQ(VORKMBGetDefaultConverter(), nullptr);
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);
    EXPECT_EQ(Open(nullptr).get(), nullptr);
    EXPECT_EQ(Fixed(VORKMBCodePageto16, nullptr, 4, "ab"), "0 3|0000 7777 7777 7777 7777");
    int cp = 7;
    EXPECT_EQ(VORKMBU32Get_C(&cp, "a", 0, -1), -1);
    EXPECT_EQ(Take(VORKMBTranscodeCodePage("ab")), "");
    const int attempts = VORKMBDefaultConverterID();
    EXPECT_GT(attempts, 1);
    ASSERT_NE(std::setlocale(LC_ALL, "zh_CN.GBK"), nullptr);
    UConverter* def = VORKMBGetDefaultConverter();
    EXPECT_EQ(NameOf(def), IcuName("GBK"));
    EXPECT_EQ(VORKMBGetDefaultConverter(), def);
    EXPECT_EQ(VORKMBDefaultConverterID(), attempts + 1) << "a success counts once";
}

// In the C locale the first call moves to en_US; later calls do nothing and
// the system encoding, once worked out, is kept.
TEST_F(EncodingTest, EnableLocaleMovesACLocaleOnceAndSystemEncodingIsKept)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    unsetenv("LC_ALL");
    EnableLocale();
    EXPECT_STREQ(std::getenv("LC_ALL"), "en_US");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "en_US")
        << "scripts/make-locales.sh generates it";
    EXPECT_STREQ(SystemEncoding(), "CP1252") << "a locale name without '.'";
    EXPECT_EQ(Platform::PutEnv("ZRX_UNSET=1") + Platform::PutEnv("ZRX_UNSET="), 0);
    std::setlocale(LC_ALL, "C");
    unsetenv("LC_ALL");
    EnableLocale();
    EXPECT_EQ(std::getenv("LC_ALL"), nullptr);
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
    ASSERT_NE(std::setlocale(LC_ALL, "zh_CN.GBK"), nullptr);
    EXPECT_STREQ(SystemEncoding(), "CP1252");
}

TEST_F(GbkTest, SystemEncodingComesFromTheCharacterLocale)
{
    std::setlocale(LC_NUMERIC, "en_US.UTF-8");
    EXPECT_STREQ(SystemEncoding(), "GBK");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C") << "numbers go back to C";
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "zh_CN.GBK") << "a chosen locale stays";
}

// Numbers go through the table, then "windows-N" / "cpN" (37: cp037); anything
// else goes to ICU as a name; "windows-28591" falls back to Latin-1.
TEST_F(GbkTest, ConverterNamesAndNumbers)
{
    const std::pair<const char*, const char*> opens[] = {{"1252", "windows-1252"},
                                                         {"01252", "windows-1252"},
                                                         {"cp1252", "windows-1252"},
                                                         {"windows-1252", "windows-1252"},
                                                         {"936", "GBK"},
                                                         {"932", "Shift_JIS"},
                                                         {"37", "IBM037"},
                                                         {"WINDOWS-28591", "ISO-8859-1"}};
    for (const auto& [name, icu] : opens)
        EXPECT_EQ(NameOf(Open(name).get()), IcuName(icu)) << name;
    for (const char* name : {"0", "100000", "1252x", "", "99999", "no-such-code-page"})
        EXPECT_EQ(Open(name).get(), nullptr) << name;
    // UTF-8 names: at most 59 bytes, and each must map to the code page.
    EXPECT_EQ(NameOf(Open("windows-1252", VORKMBConverterNew_8).get()), IcuName("windows-1252"));
    EXPECT_EQ(NameOf(Open(nullptr, VORKMBConverterNew_8).get()), IcuName("GBK"));
    EXPECT_EQ(Open(std::string(60, 'x').c_str(), VORKMBConverterNew_8).get(), nullptr);
    EXPECT_EQ(Open("\xE2\x82\xAC-unmappable", VORKMBConverterNew_8).get(), nullptr);
    SetUTF8mode(0);
    EXPECT_EQ(NameOf(Open("1252", VORKMBConverterNew_A).get()), IcuName("windows-1252"));
}

// Unmappable and illegal input becomes '?' and reports 3, also when the
// result exactly fills the target.
TEST_F(GbkTest, ConvertersSubstituteQuestionMarksAndComparisonReportsTrouble)
{
    Converter cp1252 = Open("windows-1252");
    std::string out;
    U16String u16;
    EXPECT_EQ(Out(VORKMBU16ToCodePage(cp1252.get(), out, U16({'a', 0x4E2D, 'b'})), out), "3|a?b");
    EXPECT_EQ(Fixed(VORKMB16toCodePage, cp1252.get(), 3, U16({'a', 0x4E2D, 'b'}).c_str(), 3),
              "3 3|a?bZ");
    EXPECT_EQ(Out(VORKMBCodePageToU16(nullptr, u16, "\xD6\xD0\x81\x7Fy"), u16),
              "3|4E2D 003F 007F 0079")
        << "GBK: 0x7F is no trail byte";
    EXPECT_EQ(Out(VORKMBCodePageToU16(nullptr, u16, "a\x81"), u16), "3|0061 003F")
        << "a cut character";
    EXPECT_EQ(Fixed(VORKMBCodePageto16, nullptr, 2, "a\x81", 2), "2 3|0061 003F 7777")
        << "the substitute fills the target";
    EXPECT_EQ(Out(VORKMBU16ToCodePage(nullptr, out, U16({'a', 0xD800, 'b'})), out), "3|a?b")
        << "lone surrogate";
    // Comparison is case-blind by code point; a bad byte compares as its raw
    // value and is reported; a cut lead byte is not over-read.
    int bad = -1;
    EXPECT_EQ(VORKMBCompare_C("ABC\xD6\xD0", -1, "abc\xD6\xD0", -1, &bad), 0);
    EXPECT_EQ(bad, 0);
    EXPECT_EQ(VORKMBCompare_C("abcd", -1, "ABC", -1, &bad), 1);
    EXPECT_EQ(VORKMBCompare_C("ab", 2, "abX", 2, &bad), 0);
    EXPECT_EQ(VORKMBCompare_C("ab\0X", 4, "ab", -1, &bad), 0) << "a NUL ends a counted text";
    EXPECT_EQ(VORKMBCompare_C("a\x81\x7F", -1, "A\x81\x7F", -1, &bad), 0);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(VORKMBCompare_C("\x81\x7F", -1, "\xD6\xD0", -1, &bad), -1) << "0x81 against U+4E2D";
    EXPECT_EQ(VORKMBCompare_C(nullptr, -1, "", -1, nullptr), 0);
    EXPECT_EQ(VORKMBCompare_C("\xD6", -1, "\xD6", -1, &bad), 0);
    EXPECT_EQ(bad, 3);
}
