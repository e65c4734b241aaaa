// Encoding state, converters and code-page names.
#include "EncodingTestSupport.h"

#include <cstring>
#include <memory>

using namespace ZRMem;
using namespace ZRMemTest;

TEST_F(EncodingTest, StartsInUtf8ModeWithoutDefaultConverter)
{
    EXPECT_EQ(qUTF8mode(), 1);
    EXPECT_EQ(VORKMBDefaultConverterID(), 0);
    SetUTF8mode(0);
    EXPECT_EQ(qUTF8mode(), 0);
    SetUTF8mode(2);
    EXPECT_EQ(qUTF8mode(), 1);
    EXPECT_EQ(VORKMBDefaultConverterID(), 0) << "the mode touches no converter";
}

TEST_F(GbkTest, DefaultConverterIsCreatedOnceAndCounted)
{
    // A null name before any default converter opens the process's default
    // code page without creating the default converter.
    Converter early(nullptr);
    ASSERT_NE(early.get(), nullptr);
    EXPECT_EQ(NameOf(early.get()), IcuName("GBK"));
    EXPECT_EQ(VORKMBDefaultConverterID(), 0);

    UConverter* def = VORKMBGetDefaultConverter();
    ASSERT_NE(def, nullptr);
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);
    EXPECT_EQ(VORKMBGetDefaultConverter(), def);
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);

    // Afterwards a null name gives a second, independent converter.
    Converter late(nullptr);
    ASSERT_NE(late.get(), nullptr);
    EXPECT_NE(late.icu(), def);
    EXPECT_EQ(NameOf(late.get()), NameOf(def));
}

TEST_F(EncodingTest, FailedDefaultConverterIsRetriedAndCounted)
{
    Internal::SetDefaultCodePage("no-such-code-page");
    EXPECT_EQ(VORKMBGetDefaultConverter(), nullptr);
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);
    // Everything that needs it reports trouble instead of crashing.
    int code = -1;
    unsigned short out[4];
    EXPECT_EQ(VORKMBCodePageto16(nullptr, out, 4, "ab", -1, &code), 0);
    EXPECT_EQ(code, 3);
    EXPECT_EQ(out[0], 0);
    int cp = 7;
    EXPECT_EQ(VORKMBU32Get_C(&cp, "a", 0, -1), -1);
    std::unique_ptr<unsigned short[]> array(VORKMBTranscodeCodePage("ab"));
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array[0], 0);
    // Each of those attempts raised the ID; a successful one raises it once.
    const int attempts = VORKMBDefaultConverterID();
    EXPECT_GT(attempts, 1);
    Internal::SetDefaultCodePage("UTF-8");
    EXPECT_NE(VORKMBGetDefaultConverter(), nullptr);
    EXPECT_NE(VORKMBGetDefaultConverter(), nullptr);
    EXPECT_EQ(VORKMBDefaultConverterID(), attempts + 1);
}

TEST_F(EncodingTest, EnableLocaleMovesACLocaleOnceAndSystemEncodingIsKept)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    unsetenv("LC_ALL");
    EnableLocale();
    ASSERT_NE(std::getenv("LC_ALL"), nullptr);
    EXPECT_STREQ(std::getenv("LC_ALL"), "en_US");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "en_US") << "scripts/make-locales.sh generates it";
    EXPECT_STREQ(SystemEncoding(), "CP1252") << "a locale name without '.'";

    // The second call does nothing, even back in the C locale; the system
    // encoding is not worked out again.
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

TEST_F(EncodingTest, CodePageNumbersResolveToIanaNames)
{
    EXPECT_EQ(Internal::CodePageName(1252), "windows-1252");
    EXPECT_EQ(Internal::CodePageName(932), "Shift_JIS");
    EXPECT_EQ(Internal::CodePageName(936), "GBK");
    EXPECT_EQ(Internal::CodePageName(37), "IBM037") << "not in the table: cp037";
    EXPECT_EQ(Internal::CodePageName(99999), "");
}

TEST_F(EncodingTest, ConverterNamesAndNumbers)
{
    const std::string cp1252 = IcuName("windows-1252");
    for (const char* name : {"1252", "01252", "cp1252", "windows-1252"}) {
        Converter cnv(name);
        EXPECT_EQ(NameOf(cnv.get()), cp1252) << name;
    }
    // Not code pages: these go to ICU as names, which knows none of them.
    for (const char* name : {"0", "100000", "1252x", "", "99999", "no-such-code-page"}) {
        Converter cnv(name);
        EXPECT_EQ(cnv.get(), nullptr) << name;
    }
    Converter latin1("WINDOWS-28591");
    EXPECT_EQ(NameOf(latin1.get()), IcuName("ISO-8859-1"));
    Converter gbk("936");
    EXPECT_EQ(NameOf(gbk.get()), IcuName("GBK"));
}

TEST_F(GbkTest, ConverterNamesInUtf8AndGenericText)
{
    void* cnv8 = VORKMBConverterNew_8("windows-1252");
    EXPECT_EQ(NameOf(cnv8), IcuName("windows-1252"));
    ucnv_close(static_cast<UConverter*>(cnv8));
    EXPECT_EQ(VORKMBConverterNew_8(std::string(60, 'x').c_str()), nullptr) << "longer than 59 bytes";
    EXPECT_EQ(VORKMBConverterNew_8("\xE2\x82\xAC-unmappable"), nullptr);
    void* null8 = VORKMBConverterNew_8(nullptr);
    EXPECT_EQ(NameOf(null8), IcuName("GBK"));
    ucnv_close(static_cast<UConverter*>(null8));

    SetUTF8mode(0);
    void* cnvA = VORKMBConverterNew_A("1252");
    EXPECT_EQ(NameOf(cnvA), IcuName("windows-1252"));
    ucnv_close(static_cast<UConverter*>(cnvA));
}

TEST_F(GbkTest, ConvertersSubstituteQuestionMarksAndReportTrouble)
{
    Converter cp1252("windows-1252");
    std::string out;
    EXPECT_EQ(VORKMBU16ToCodePage(cp1252.get(), out, U16({'a', 0x4E2D, 'b'})), 3);
    EXPECT_EQ(out, "a?b");
    // Exactly filling the target keeps the report.
    char fixed[3];
    const unsigned short text[] = {'a', 0x4E2D, 'b'};
    int code = -1;
    EXPECT_EQ(VORKMB16toCodePage(cp1252.get(), fixed, 3, text, 3, &code), 3);
    EXPECT_EQ(code, 3);
    U16String u16;
    EXPECT_EQ(VORKMBCodePageToU16(nullptr, u16, "\xD6\xD0\x81\x7Fy"), 3) << "GBK: 0x7F is no trail byte";
    EXPECT_EQ(u16, U16({0x4E2D, '?', 0x7F, 'y'}));
    EXPECT_EQ(VORKMBCodePageToU16(nullptr, u16, "a\x81"), 3) << "a cut character";
    EXPECT_EQ(u16, U16({'a', '?'}));
    // An unpaired surrogate is illegal for the converter too.
    EXPECT_EQ(VORKMBU16ToCodePage(nullptr, out, U16({'a', 0xD800, 'b'})), 3);
    EXPECT_EQ(out, "a?b");
}

TEST_F(GbkTest, CompareCodePageTextWithoutCase)
{
    int bad = -1;
    EXPECT_EQ(VORKMBCompare_C("ABC\xD6\xD0", -1, "abc\xD6\xD0", -1, &bad), 0);
    EXPECT_EQ(bad, 0);
    EXPECT_EQ(VORKMBCompare_C("abc", -1, "abd", -1, &bad), -1);
    EXPECT_EQ(VORKMBCompare_C("abcd", -1, "ABC", -1, &bad), 1);
    EXPECT_EQ(VORKMBCompare_C("ab", 2, "abX", 2, &bad), 0) << "counted";
    EXPECT_EQ(VORKMBCompare_C("ab\0X", 4, "ab", -1, &bad), 0) << "a NUL ends a counted text";
    // A bad byte compares as its raw value and is reported.
    EXPECT_EQ(VORKMBCompare_C("a\x81\x7F", -1, "A\x81\x7F", -1, &bad), 0);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(VORKMBCompare_C("\x81\x7F", -1, "\xD6\xD0", -1, &bad), -1) << "0x81 against U+4E2D";
    EXPECT_EQ(VORKMBCompare_C(nullptr, -1, "", -1, nullptr), 0);
    EXPECT_EQ(VORKMBCompare_C("\xD6", -1, "\xD6", -1, &bad), 0) << "a cut lead byte is not over-read";
    EXPECT_EQ(bad, 3);
}
