// The few C runtime calls of the encoding services whose names and meaning
// come from the Windows runtime library, over the C library of this platform.
// Everything that asks the process's locale or environment goes through here.
#ifndef ZRPARSEXMLR_ZRPLATFORM_H
#define ZRPARSEXMLR_ZRPLATFORM_H

#include <cstddef>
#include <string>

namespace ZRMem {
namespace Platform {

// isleadbyte: non-zero if the byte starts a multi-byte character in the
// current locale (a byte that is not a whole character on its own but can
// begin one). Values outside 0..255 are no lead byte.
int IsLeadByte(int byte);

// mblen: bytes of the character at text within the first count bytes, 0 for
// a null pointer or a NUL, -1 if the bytes do not form a whole valid
// character. Keeps no state between calls.
int MbLen(const char* text, size_t count);

// The code set of the C library's character locale (nl_langinfo(CODESET):
// "GBK", "CP1252", "UTF-8", ...), or "" while that locale is "C" or "POSIX",
// that is, while the host has set none.
std::string CharacterCodeSet();

// setlocale, unchanged.
const char* SetLocale(int category, const char* locale);

// _putenv: takes "NAME=value" and sets the variable; "NAME=" removes it.
// 0 on success, -1 on failure.
int PutEnv(const char* assignment);

} // namespace Platform
} // namespace ZRMem

#endif
