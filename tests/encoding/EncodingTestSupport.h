// Fixture and helpers of the encoding tests. The encoding services keep
// process-wide state (default converter, UTF-8 mode, locale, environment);
// every test starts from that state's beginning and leaves the process as it
// found it, so that the order of the tests does not matter. The default
// converter is the exception: it is made once per process, for the character
// locale of its first need. Each fixture sets its locale before anything
// needs the converter, and ctest runs every test in a process of its own; a
// test that meets a converter made for another locale (all tests in one
// process) is skipped.
#ifndef ZRX_TESTS_ENCODING_SUPPORT_H
#define ZRX_TESTS_ENCODING_SUPPORT_H

#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRMem.h>

#include "ZREncodingInternal.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

// Skips the rest of a test that needs the default converter still unmade.
#define REQUIRE_FRESH_PROCESS()                                                                    \
    if (ZRMem::VORKMBDefaultConverterID() != 0)                                                    \
    GTEST_SKIP() << "the default converter is made already; this test needs a process of its own"

namespace ZRMemTest {

using namespace ZRMem;

inline U16String U16(std::initializer_list<unsigned short> units)
{
    return U16String(units.begin(), units.end());
}

class EncodingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_locale = std::setlocale(LC_ALL, nullptr);
        if (const char* env = std::getenv("LC_ALL"))
            m_env = env;
        ZRMem::Internal::ResetEncodingState();
        UseLocale(Locale(), CodePage());
    }

    void TearDown() override
    {
        ZRMem::Internal::ResetEncodingState();
        std::setlocale(LC_ALL, m_locale.c_str());
        if (m_env)
            setenv("LC_ALL", m_env->c_str(), 1);
        else
            unsetenv("LC_ALL");
    }

    // The character locale of the test, and the ICU name of the code page
    // that the test needs the default converter to have (null: any).
    virtual const char* Locale() const { return "C"; }
    virtual const char* CodePage() const { return nullptr; }

private:
    // A missing locale fails the test: the set-up script generates it.
    static void UseLocale(const char* locale, const char* codePage);

    std::string m_locale;
    std::optional<std::string> m_env;
};

// A fixture for the character locale `locale` that needs the default
// converter for `codePage` (null: any).
#define ZRX_LOCALE_FIXTURE(name, locale, codePage)                                                 \
    class name : public EncodingTest {                                                             \
    protected:                                                                                     \
        const char* Locale() const override { return locale; }                                     \
        const char* CodePage() const override { return codePage; }                                 \
    }

// The "C" locale, whose default converter is UTF-8.
ZRX_LOCALE_FIXTURE(CLocaleTest, "C", "UTF-8");
// Double-byte code page: GBK in ICU and in the C library.
ZRX_LOCALE_FIXTURE(GbkTest, "zh_CN.GBK", "GBK");
// Single-byte code page: windows-1252 in ICU and in the C library.
ZRX_LOCALE_FIXTURE(Cp1252Test, "en_US.CP1252", "windows-1252");
// A code set that the C library has and ICU does not know: the default
// converter cannot be opened (its tests need a fresh process).
ZRX_LOCALE_FIXTURE(UnknownCodeSetTest, "hy_AM.ARMSCII-8", nullptr);

// A converter opened by the library, closed at the end of the scope.
struct CloseConverter {
    void operator()(void* cnv) const { ucnv_close(static_cast<UConverter*>(cnv)); }
};
using Converter = std::unique_ptr<void, CloseConverter>;

inline Converter Open(const char* name, void* (*open)(const char*) = VORKMBConverterNew_C)
{
    return Converter(open(name));
}

inline std::string NameOf(const void* cnv)
{
    UErrorCode err = U_ZERO_ERROR;
    return cnv ? ucnv_getName(static_cast<const UConverter*>(cnv), &err) : "";
}

// The ICU name of the converter that name opens in ICU itself.
inline std::string IcuName(const char* name)
{
    UErrorCode err = U_ZERO_ERROR;
    return NameOf(Converter(ucnv_open(name, &err)).get());
}

// Text as expectations show it: bytes as they are with each NUL as "\0",
// UTF-16 as hex units.
template <class T>
std::string Shown(const std::basic_string<T>& text)
{
    std::string shown;
    char unit[6];
    for (T u : text) {
        if (sizeof(T) == 1) {
            shown += u ? std::string(1, static_cast<char>(u)) : "\\0";
        } else {
            std::snprintf(unit, sizeof unit, shown.empty() ? "%04X" : " %04X",
                          static_cast<unsigned>(u));
            shown += unit;
        }
    }
    return shown;
}

// A result code and a text as one string "code|text", so that one expectation
// checks both and a failure shows both.
template <class S>
std::string Out(int code, const S& text)
{
    return std::to_string(code) + "|" + Shown(text);
}

// The text of a new array, which it frees; "null" for none.
template <class T>
std::string Take(T* array)
{
    std::unique_ptr<T[]> owned(array);
    return owned ? Shown(std::basic_string<T>(owned.get())) : "null";
}

// Runs a fixed-buffer conversion into a buffer of fill units ('Z' or 0x7777)
// and gives "length code|units 0 to capacity": the unit at the capacity
// shows that nothing was written beyond it.
template <class T, class Convert>
std::string RunFixed(int capacity, Convert convert)
{
    T buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), sizeof(T) == 1 ? T('Z') : T(0x7777));
    int code = -1;
    const int length = convert(buffer, capacity, &code);
    const size_t shown = static_cast<size_t>(std::clamp(capacity + 1, 1, 16));
    return std::to_string(length) + " " + Out(code, std::basic_string<T>(buffer, shown));
}

template <class T, class S>
std::string Fixed(int (*convert)(T*, int, const S*, int, int*), int capacity, const S* source,
                  int length = -1)
{
    return RunFixed<T>(capacity,
                       [&](T* t, int n, int* code) { return convert(t, n, source, length, code); });
}

template <class T, class S>
std::string Fixed(int (*convert)(void*, T*, int, const S*, int, int*), void* cnv, int capacity,
                  const S* source, int length = -1)
{
    return RunFixed<T>(
        capacity, [&](T* t, int n, int* code) { return convert(cnv, t, n, source, length, code); });
}

// Runs a copy into 8 bytes of 'Z' and shows them.
inline std::string Copied(char* (*copy)(char*, const char*, size_t), const char* source,
                          size_t size)
{
    char target[8];
    std::fill(std::begin(target), std::end(target), 'Z');
    EXPECT_EQ(copy(target, source, size), target);
    return Shown(std::string(target, sizeof target));
}

inline void EncodingTest::UseLocale(const char* locale, const char* codePage)
{
    ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr)
        << "locale " << locale << " is missing; scripts/make-locales.sh generates it";
    UConverter* def = ZRMem::Internal::ExistingDefaultConverter();
    if (codePage && VORKMBDefaultConverterID() != 0 && (!def || NameOf(def) != IcuName(codePage)))
        GTEST_SKIP()
            << "the default converter was made for another locale; this test needs a process "
               "of its own, as ctest gives it";
}

} // namespace ZRMemTest

#endif
