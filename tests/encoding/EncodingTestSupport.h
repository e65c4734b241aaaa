// Fixture of the encoding tests. The encoding services keep process-wide
// state (default converter, UTF-8 mode, locale, environment); every test
// starts from that state's beginning and leaves the process as it found it,
// so that the order of the tests does not matter.
#ifndef ZRX_TESTS_ENCODING_SUPPORT_H
#define ZRX_TESTS_ENCODING_SUPPORT_H

#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRMem.h>

#include "ZREncodingInternal.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <clocale>
#include <cstdlib>
#include <string>

namespace ZRMemTest {

using ZRMem::U16String;

inline U16String U16(std::initializer_list<unsigned short> units)
{
    return U16String(units.begin(), units.end());
}

class EncodingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* locale = std::setlocale(LC_ALL, nullptr);
        m_locale = locale ? locale : "C";
        const char* env = std::getenv("LC_ALL");
        m_hadEnv = env != nullptr;
        m_env = env ? env : "";
        ZRMem::Internal::ResetEncodingState();
        ZRMem::Internal::SetDefaultCodePage(nullptr);
    }

    void TearDown() override
    {
        ZRMem::Internal::ResetEncodingState();
        ZRMem::Internal::SetDefaultCodePage(nullptr);
        std::setlocale(LC_ALL, m_locale.c_str());
        if (m_hadEnv)
            setenv("LC_ALL", m_env.c_str(), 1);
        else
            unsetenv("LC_ALL");
    }

    // The default converter opens icuName, and the C library's character
    // classes come from locale. A missing locale fails the test: the set-up
    // script generates it.
    static void UseCodePage(const char* icuName, const char* locale)
    {
        ZRMem::Internal::SetDefaultCodePage(icuName);
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr)
            << "locale " << locale << " is missing; scripts/make-locales.sh generates it";
    }

private:
    std::string m_locale;
    std::string m_env;
    bool m_hadEnv = false;
};

// Double-byte code page: GBK in ICU and in the C library.
class GbkTest : public EncodingTest {
protected:
    void SetUp() override
    {
        EncodingTest::SetUp();
        ASSERT_NO_FATAL_FAILURE(UseCodePage("GBK", "zh_CN.GBK"));
    }
};

// Single-byte code page: windows-1252 in ICU and in the C library.
class Cp1252Test : public EncodingTest {
protected:
    void SetUp() override
    {
        EncodingTest::SetUp();
        ASSERT_NO_FATAL_FAILURE(UseCodePage("windows-1252", "en_US.CP1252"));
    }
};

// A converter opened by the library, closed at the end of the scope.
class Converter {
public:
    explicit Converter(const char* name) : m_cnv(ZRMem::VORKMBConverterNew_C(name)) {}
    ~Converter()
    {
        if (m_cnv)
            ucnv_close(static_cast<UConverter*>(m_cnv));
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    void* get() const { return m_cnv; }
    UConverter* icu() const { return static_cast<UConverter*>(m_cnv); }
private:
    void* m_cnv;
};

// The ICU name of the converter that name opens in ICU itself.
inline std::string IcuName(const char* name)
{
    UErrorCode err = U_ZERO_ERROR;
    UConverter* cnv = ucnv_open(name, &err);
    std::string result = U_SUCCESS(err) ? ucnv_getName(cnv, &err) : "";
    ucnv_close(cnv);
    return result;
}

inline std::string NameOf(void* cnv)
{
    UErrorCode err = U_ZERO_ERROR;
    return cnv ? ucnv_getName(static_cast<UConverter*>(cnv), &err) : "";
}

} // namespace ZRMemTest

#endif
