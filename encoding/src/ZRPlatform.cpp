#include "ZRPlatform.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include <langinfo.h>

namespace ZRMem {
namespace Platform {

int IsLeadByte(int byte)
{
    if (byte < 0 || byte > 0xFF)
        return 0;
    std::mbstate_t state{};
    const char c = static_cast<char>(byte);
    // An incomplete multi-byte character: the byte opens one.
    return std::mbrlen(&c, 1, &state) == static_cast<size_t>(-2) ? 1 : 0;
}

int MbLen(const char* text, size_t count)
{
    if (!text)
        return 0;
    std::mbstate_t state{};
    const size_t n = std::mbrlen(text, count, &state);
    if (n == static_cast<size_t>(-1) || n == static_cast<size_t>(-2))
        return -1;
    return static_cast<int>(n);
}

std::string CharacterCodeSet()
{
    const char* name = std::setlocale(LC_CTYPE, nullptr);
    if (!name || std::strcmp(name, "C") == 0 || std::strcmp(name, "POSIX") == 0)
        return std::string();
    const char* codeSet = nl_langinfo(CODESET);
    return codeSet ? codeSet : "";
}

const char* SetLocale(int category, const char* locale)
{
    return std::setlocale(category, locale);
}

int PutEnv(const char* assignment)
{
    if (!assignment)
        return -1;
    const char* eq = std::strchr(assignment, '=');
    if (!eq || eq == assignment)
        return -1;
    const std::string name(assignment, eq);
    if (eq[1] == '\0')
        return ::unsetenv(name.c_str()) == 0 ? 0 : -1;
    return ::setenv(name.c_str(), eq + 1, 1) == 0 ? 0 : -1;
}

} // namespace Platform
} // namespace ZRMem
