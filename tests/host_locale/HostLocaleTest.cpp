// The encoding services in a host that has set its character locale from the
// environment, as a program does with setlocale(LC_ALL, "") at its start.
// The default converter is made once per process, so each locale runs in a
// process of its own: CTest starts this program once per locale, with LC_ALL
// set. Only the public interface is used, as a host uses it.
#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRMem.h>

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace ZRMem;

namespace {

// A locale as LC_ALL names it, the code page that the default converter must
// open in it, and texts to check it with.
struct Host {
    const char* locale;
    const char* codePage; // a name under which ICU opens the code page
    const char* cpText;   // a text in the code page ...
    const char* u8Text;   // ... and in UTF-8
    const char* upper;    // a capital letter in the code page, and its small letter
    const char* lower;
    const char* systemText; // cpText's UTF-8 in the system encoding
};

// clang-format off
const Host kHosts[] = {
    // 中乗: the trail byte of 乗 (0x81 0x5C) is a backslash.
    {"zh_CN.GBK", "GBK", "\xD6\xD0\x81\x5C", "\xE4\xB8\xAD\xE4\xB9\x97", "\xA6\xA1", "\xA6\xC1", "\xD6\xD0\x81\x5C"},
    {"en_US.CP1252", "windows-1252", "\xC9t\xE9", "\xC3\x89t\xC3\xA9", "\xC9", "\xE9", "\xC9t\xE9"},
    {"en_US.UTF-8", "UTF-8", "\xC3\x89t\xC3\xA9", "\xC3\x89t\xC3\xA9", "\xC3\x89", "\xC3\xA9", "\xC3\x89t\xC3\xA9"},
    // No locale set: UTF-8, while the system encoding of a locale name
    // without a code set is CP1252.
    {"C", "UTF-8", "\xC3\x89t\xC3\xA9", "\xC3\x89t\xC3\xA9", "\xC3\x89", "\xC3\xA9", "\xC9t\xE9"},
};
// clang-format on

const Host* gHost = nullptr;

std::string NameOf(const UConverter* cnv)
{
    UErrorCode err = U_ZERO_ERROR;
    return cnv ? ucnv_getName(cnv, &err) : "(none)";
}

std::string IcuName(const char* name)
{
    UErrorCode err = U_ZERO_ERROR;
    UConverter* cnv = ucnv_open(name, &err);
    const std::string result = NameOf(cnv);
    ucnv_close(cnv);
    return result;
}

// Runs first, while nothing has made the default converter: many threads
// that need it at the same moment, directly or through a conversion without
// a converter, all get the one converter, opened once.
TEST(HostLocale, ThreadsThatNeedTheDefaultConverterFirstShareIt)
{
    ASSERT_EQ(VORKMBDefaultConverterID(), 0) << "this test runs first in its process";
    constexpr int kThreads = 16;
    std::atomic<bool> go{false};
    std::vector<UConverter*> seen(kThreads, nullptr);
    std::vector<std::string> converted(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            while (!go.load())
                std::this_thread::yield();
            if (t % 2)
                VORKMBCodePageToU8(nullptr, converted[static_cast<size_t>(t)], gHost->cpText);
            seen[static_cast<size_t>(t)] = VORKMBGetDefaultConverter();
        });
    }
    go.store(true);
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_NE(seen[0], nullptr);
    for (int t = 0; t < kThreads; ++t) {
        EXPECT_EQ(seen[static_cast<size_t>(t)], seen[0]) << "thread " << t;
        if (t % 2) {
            EXPECT_EQ(converted[static_cast<size_t>(t)], gHost->u8Text) << "thread " << t;
        }
    }
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);
}

// The default converter is the locale's code page; the lead bytes of the C
// library and the characters of the converter agree (no search hits inside a
// character, text compares as characters); the conversions without a
// converter and the name string's forms use that code page. Last: the system
// encoding moves a process in the "C" locale to "en_US".
TEST(HostLocale, EncodingServicesFollowTheLocalesCodePage)
{
    UConverter* def = VORKMBGetDefaultConverter();
    std::printf("%s: the default converter is %s\n", gHost->locale, NameOf(def).c_str());
    EXPECT_EQ(NameOf(def), IcuName(gHost->codePage));
    void* own = VORKMBConverterNew_C(nullptr);
    EXPECT_EQ(NameOf(static_cast<UConverter*>(own)), NameOf(def));
    ucnv_close(static_cast<UConverter*>(own));
    EXPECT_EQ(VORKMBGetDefaultConverter(), def);
    EXPECT_EQ(VORKMBDefaultConverterID(), 1);

    const std::string text = std::string(gHost->cpText) + "\\";
    EXPECT_EQ(VORKMBstrcspn_C(text.c_str(), "\\"), std::strlen(gHost->cpText));
    EXPECT_EQ(VORKMBstrchr_C(text.c_str(), '\\'), text.c_str() + std::strlen(gHost->cpText));
    int bad = -1;
    EXPECT_EQ(VORKMBqstricmp_C(gHost->cpText, -1, gHost->cpText, -1, &bad), 1);
    EXPECT_EQ(bad, 0);
    EXPECT_EQ(VORKMBqstricmp_C(gHost->upper, -1, gHost->lower, -1, &bad), 1);
    EXPECT_EQ(bad, 0);

    std::string out;
    EXPECT_EQ(VORKMBCodePageToU8(nullptr, out, gHost->cpText), 0);
    EXPECT_EQ(out, gHost->u8Text);
    EXPECT_EQ(VORKMBU8ToCodePage(nullptr, out, gHost->u8Text), 0);
    EXPECT_EQ(out, gHost->cpText);
    std::unique_ptr<unsigned short[]> u16(VORKMBTranscodeCodePage(gHost->cpText));
    ASSERT_TRUE(u16);
    std::unique_ptr<char[]> u8(VORKMBTranscodeU8(u16.get()));
    ASSERT_TRUE(u8);
    EXPECT_STREQ(u8.get(), gHost->u8Text);
    // Generic text in code page mode is the host's code page text.
    SetUTF8mode(0);
    char buffer[32];
    int code = -1;
    const int length = VORKMBGenericto8(buffer, sizeof buffer, gHost->cpText, -1, &code);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(std::string(buffer, static_cast<size_t>(length)), gHost->u8Text);
    EXPECT_EQ(VORKMBU8ToGeneric(out, gHost->u8Text), 0);
    EXPECT_EQ(out, gHost->cpText);
    SetUTF8mode(1);

    ExtNameStr name;
    name.SetU8(gHost->u8Text);
    EXPECT_EQ(name.GetCP(), gHost->cpText);
    EXPECT_EQ(name.GetSystem(), gHost->systemText);
    EXPECT_EQ(name.ErrorCode(), 0);
    name.SetCP(gHost->cpText, nullptr);
    EXPECT_EQ(name.GetU8(), gHost->u8Text);
    EXPECT_EQ(name.ErrorCode(), 0);
}

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const char* wanted = std::getenv("LC_ALL");
    for (const Host& host : kHosts) {
        if (wanted && std::strcmp(wanted, host.locale) == 0)
            gHost = &host;
    }
    if (!gHost) {
        std::fprintf(stderr, "test_host_locale: LC_ALL must name one of the locales of the test\n");
        return 1;
    }
    if (!std::setlocale(LC_ALL, "")) {
        std::fprintf(
            stderr,
            "test_host_locale: locale %s is missing; scripts/make-locales.sh generates it\n",
            wanted);
        return 1;
    }
    return RUN_ALL_TESTS();
}
