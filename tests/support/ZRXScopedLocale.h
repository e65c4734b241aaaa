// Switches the C library's locale, for the life of the object, as a host
// process may have done before it calls the library: "de_DE.UTF-8", whose
// decimal separator is a comma, or "ps_AF.UTF-8", whose separator is the two
// bytes of U+066B. scripts/make-locales.sh generates both.
#ifndef ZRX_TESTS_SCOPEDLOCALE_H
#define ZRX_TESTS_SCOPEDLOCALE_H

#include <clocale>
#include <string>

namespace zrxtest {

class ScopedLocale {
public:
    explicit ScopedLocale(const char* name) : saved(std::setlocale(LC_ALL, nullptr))
    {
        active = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, saved.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

    // False if the machine lacks the locale.
    bool Active() const { return active; }

private:
    std::string saved;
    bool active = false;
};

} // namespace zrxtest

#endif
