// The extended name string: one name in every encoding.
#include "EncodingTestSupport.h"

using namespace ZRMemTest;

namespace {
const char kZhongU8[] = "\xE4\xB8\xAD";
const char kZhongGbk[] = "\xD6\xD0";
} // namespace

// Every setter fills every form; Clear and a new name give empty forms;
// copies are independent of their source.
TEST_F(GbkTest, SettersFillEveryForm)
{
    ExtNameStr name;
    EXPECT_TRUE(name.Empty());
    EXPECT_STREQ(name.GetU8Z(), "");
    EXPECT_EQ(name.GetU16Z()[0], 0);
    EXPECT_EQ(name.GetSystem(), "");
    name.SetU8(std::string("a") + kZhongU8);
    EXPECT_FALSE(name.Empty());
    EXPECT_STREQ(name.GetCPZ(), (std::string("a") + kZhongGbk).c_str());
    EXPECT_EQ(name.GetU16(), U16({'a', 0x4E2D}));
    EXPECT_EQ(name.GetSystem(), std::string("a") + kZhongGbk) << "the locale's encoding is GBK";
    EXPECT_EQ(name.ErrorCode(), 0);
    ExtNameStr copy(name), assigned;
    assigned = name;
    assigned = assigned;
    name.SetCP(kZhongGbk);
    EXPECT_EQ(name.GetU8(), kZhongU8);
    EXPECT_EQ(copy.GetCP() + assigned.GetCP(), std::string("a") + kZhongGbk + "a" + kZhongGbk);
    EXPECT_EQ(assigned.GetU16(), U16({'a', 0x4E2D}));
    Converter cp1252 = Open("windows-1252");
    name.SetCP("\xE9", cp1252.get());
    EXPECT_EQ(name.GetU8(), "\xC3\xA9");
    name.SetU16(U16({0xD83D, 0xDE00}));
    EXPECT_EQ(name.GetU8(), "\xF0\x9F\x98\x80");
    // System text replaces the master and the code page form, not UTF-16.
    name.SetSystem(kZhongGbk);
    EXPECT_EQ(name.GetSystem(), kZhongGbk);
    EXPECT_EQ(name.GetU8(), kZhongU8);
    EXPECT_EQ(name.GetCP(), kZhongGbk);
    EXPECT_EQ(name.GetU16(), U16({0xD83D, 0xDE00}));
    EXPECT_EQ(name.ErrorCode(), 0);
    name.Clear();
    EXPECT_TRUE(name.Empty());
    EXPECT_EQ(name.GetCP(), "");
    EXPECT_TRUE(name.GetU16().empty());
}

// The generic form is taken in the mode of each call, from the master.
TEST_F(GbkTest, GenericTextFollowsTheModeAtEachCall)
{
    ExtNameStr name;
    name.SetGeneric(kZhongU8);
    EXPECT_EQ(name.GetU8(), kZhongU8);
    EXPECT_EQ(name.GetGeneric(), kZhongU8);
    SetUTF8mode(0);
    EXPECT_EQ(name.GetGeneric(), kZhongGbk);
    EXPECT_STREQ(name.GetGenericZ(), kZhongGbk);
    name.SetGeneric(kZhongGbk);
    EXPECT_EQ(name.GetU8(), kZhongU8);
}

// The code page forms follow the default converter once it opens. A name
// made while it could not be opened is refreshed by the next getter; the
// opening happens while that refresh makes the code page form, after the ID
// was stored, so the getter after it refreshes once more, to the same text.
// The system form is never refreshed by its own getter.
TEST_F(UnknownCodeSetTest, CodePageFormsFollowTheDefaultConverterOnceItOpens)
{
    REQUIRE_FRESH_PROCESS();
    ExtNameStr name;
    name.SetU8("\xC3\xA9x");
    EXPECT_EQ(VORKMBGetDefaultConverter(), nullptr);
    EXPECT_EQ(name.GetCP(), "");
    EXPECT_EQ(name.GetSystem(), "");
    EXPECT_EQ(name.ErrorCode(), 3);
    ASSERT_NE(std::setlocale(LC_ALL, "zh_CN.GBK"), nullptr);
    const int id = VORKMBDefaultConverterID();
    EXPECT_EQ(name.GetCP(), "\xA8\xA6x");
    EXPECT_EQ(VORKMBDefaultConverterID(), id + 1);
    EXPECT_EQ(name.GetCP(), "\xA8\xA6x");
    EXPECT_EQ(name.ErrorCode(), 0);
    EXPECT_EQ(VORKMBDefaultConverterID(), id + 1);
    // ICU does not know the system encoding (ARMSCII-8): the default
    // converter serves.
    EXPECT_EQ(name.GetSystem(), "\xA8\xA6x");
}

// Unmappable text reports 3 when the code page form is made (here on the
// refresh after the default converter's creation); ill-formed UTF-8 at once.
TEST_F(GbkTest, BadTextIsReported)
{
    REQUIRE_FRESH_PROCESS();
    ExtNameStr name;
    name.SetU8("\xE0\xB8\x81"); // U+0E01: no Thai in GBK
    EXPECT_EQ(name.ErrorCode(), 0);
    EXPECT_EQ(name.GetCP(), "?");
    EXPECT_EQ(name.ErrorCode(), 3);
    name.SetU8("\xFF");
    EXPECT_TRUE(name.GetU16().empty());
    EXPECT_EQ(name.ErrorCode(), 3);
    // Text through a caller's converter is not kept as the code page form.
    name.SetU8(std::string(kZhongU8) + "\xC3\xA9");
    Converter cp1252 = Open("windows-1252");
    EXPECT_EQ(name.GetCP(cp1252.get()), "?\xE9");
    EXPECT_EQ(name.ErrorCode(), 3);
    EXPECT_EQ(name.GetCP(), std::string(kZhongGbk) + "\xA8\xA6");
}
