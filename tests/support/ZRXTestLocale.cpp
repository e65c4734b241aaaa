// Runs a test program in the locale named by the environment variable
// ZRX_TEST_LOCALE, when it is set, as a host process that chose its own
// locale would: the C library's locale (numbers included) and the C++ global
// locale. A locale that the machine lacks ends the program with a failure
// before any test runs (not a skip, which CTest would count as no failure),
// so that a run meant for it can't pass in the "C" locale unnoticed.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <stdexcept>

namespace {

class HostLocale : public ::testing::Environment {
public:
    void SetUp() override
    {
        const char* name = std::getenv("ZRX_TEST_LOCALE");
        if (name == nullptr || *name == '\0')
            return;
        bool made = true;
        try {
            std::locale::global(std::locale(name));
        } catch (const std::runtime_error&) {
            made = false;
        }
        if (made && std::setlocale(LC_ALL, name) != nullptr)
            return;
        std::fprintf(stderr,
                     "ZRX_TEST_LOCALE: the locale %s is missing (scripts/make-locales.sh "
                     "generates it)\n",
                     name);
        std::exit(EXIT_FAILURE);
    }
};

const ::testing::Environment* const kHostLocale =
    ::testing::AddGlobalTestEnvironment(new HostLocale);

} // namespace
