// String primitives for UTF-8 text: stepping, searching, comparing and copying
// by whole characters.
#include "ZREncodingInternal.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <climits>
#include <cstring>

namespace ZRMem {
namespace Internal {

int DecodeWellFormed(const uint8_t* s, int i, int length, int32_t* codePoint)
{
    const uint8_t b0 = s[i];
    if (b0 < 0x80) {
        *codePoint = b0;
        return 1;
    }
    if (b0 < 0xC2 || b0 > 0xF4)
        return -1;
    const int n = b0 < 0xE0 ? 2 : (b0 < 0xF0 ? 3 : 4);
    if (length - i < n)
        return -1;
    // The second byte has a narrower range after some lead bytes: no overlong
    // forms, no surrogates, nothing above U+10FFFF.
    uint8_t lo = 0x80, hi = 0xBF;
    if (b0 == 0xE0)
        lo = 0xA0;
    else if (b0 == 0xED)
        hi = 0x9F;
    else if (b0 == 0xF0)
        lo = 0x90;
    else if (b0 == 0xF4)
        hi = 0x8F;
    if (s[i + 1] < lo || s[i + 1] > hi)
        return -1;
    int32_t c = b0 & (0x7F >> n);
    c = (c << 6) | (s[i + 1] & 0x3F);
    for (int k = 2; k < n; ++k) {
        if ((s[i + k] & 0xC0) != 0x80)
            return -1;
        c = (c << 6) | (s[i + k] & 0x3F);
    }
    *codePoint = c;
    return n;
}

int DecodeStrict(const uint8_t* s, int i, int length, int32_t* codePoint)
{
    int32_t c = 0;
    const int n = DecodeWellFormed(s, i, length, &c);
    if (n < 0 || !IsCharacter(c))
        return -1;
    *codePoint = c;
    return n;
}

bool IsWellFormedUTF8(const char* text, int length)
{
    const uint8_t* s = reinterpret_cast<const uint8_t*>(text);
    const int end = length < 0 ? static_cast<int>(std::strlen(text)) : length;
    int32_t c = 0;
    for (int i = 0; i < end;) {
        if (s[i] < 0x80) {
            ++i;
            continue;
        }
        const int n = DecodeWellFormed(s, i, end, &c);
        if (n < 0)
            return false;
        i += n;
    }
    return true;
}

} // namespace Internal

using namespace Internal;

namespace {

const uint8_t* Bytes(const char* p)
{
    return reinterpret_cast<const uint8_t*>(p);
}

// Start of the sequence that ends before index i, and whether it is a
// character (well-formed and no noncharacter).
int PreviousStart(const char* text, int i, bool* isCharacter)
{
    UChar32 c = 0;
    U8_PREV(Bytes(text), 0, i, c);
    *isCharacter = IsCharacter(c);
    return i;
}

// Length of text[0, length) without a trailing run of bytes that are no
// character; a character cut short at the end goes as a whole.
int TrimToCharacters(const char* text, int length)
{
    while (length > 0) {
        bool isCharacter = false;
        const int start = PreviousStart(text, length, &isCharacter);
        if (isCharacter)
            break;
        length = start;
    }
    return length;
}

// A code point of the text by its lead byte alone, as the search reads it.
// Gives the bytes of the sequence, or 0 when a NUL cuts it short.
int LooseDecode(const uint8_t* s, uint32_t* codePoint)
{
    const uint8_t b0 = s[0];
    if (b0 < 0x80) {
        *codePoint = b0;
        return 1;
    }
    const int n = b0 < 0xE0 ? 2 : (b0 < 0xF0 ? 3 : 4);
    uint32_t c = b0 & (n == 2 ? 0x1F : (n == 3 ? 0x0F : 0x07));
    for (int k = 1; k < n; ++k) {
        if (s[k] == 0)
            return 0;
        c = (c << 6) | (s[k] & 0x3F);
    }
    *codePoint = c;
    return n;
}

char* SearchCodePoint(const char* text, unsigned int character, bool last)
{
    if (!text)
        return nullptr;
    if (character < 128)
        return const_cast<char*>(last ? std::strrchr(text, static_cast<int>(character))
                                      : std::strchr(text, static_cast<int>(character)));
    const uint8_t* s = Bytes(text);
    const char* found = nullptr;
    size_t i = 0;
    while (s[i] != 0) {
        uint32_t c = 0;
        const int n = LooseDecode(s + i, &c);
        if (n == 0)
            break;
        if (c == character) {
            found = text + i;
            if (!last)
                break;
        }
        i += static_cast<size_t>(n);
    }
    return const_cast<char*>(found);
}

int32_t NextCompareUnit8(const char* text, int& i, int end, int& bad)
{
    int32_t c = 0;
    const int n = DecodeWellFormed(Bytes(text), i, end, &c);
    if (n < 0) {
        bad = 3;
        return Bytes(text)[i++];
    }
    i += n;
    return u_tolower(c);
}

} // namespace

int VORKMBCompare_8(const char* a, int lengthA, const char* b, int lengthB, int* badInput)
{
    return CompareTexts(a, lengthA, b, lengthB, badInput, NextCompareUnit8);
}

size_t VORKMBmbclen_8(const char* p)
{
    if (!p)
        return 0;
    const uint8_t b0 = Bytes(p)[0];
    size_t n = 1;
    if (b0 >= 0xC0 && b0 <= 0xDF)
        n = 2;
    else if (b0 >= 0xE0 && b0 <= 0xEF)
        n = 3;
    else if (b0 >= 0xF0 && b0 <= 0xF7)
        n = 4;
    for (size_t k = 1; k < n; ++k)
        if (p[k] == '\0')
            return k;
    return n;
}

int VORKMBmblen_8(const char* p, size_t available)
{
    if (!p || available == 0 || *p == '\0')
        return 0;
    const uint8_t* s = Bytes(p);
    if (s[0] < 0x80)
        return 1;
    if (s[0] >= 0xE1 && s[0] <= 0xEC && available >= 3 && U8_IS_TRAIL(s[1]) && U8_IS_TRAIL(s[2]))
        return 3;
    if (s[0] >= 0xC2 && s[0] <= 0xDF && available >= 2 && U8_IS_TRAIL(s[1]))
        return 2;
    const int limit = available > 4 ? 4 : static_cast<int>(available);
    int32_t c = 0;
    return DecodeStrict(s, 0, limit, &c);
}

char* VORKMBstrinc_8(const char* p)
{
    return const_cast<char*>(p + VORKMBmbclen_8(p));
}

char* VORKMBstrchr_8(const char* text, unsigned int character)
{
    return SearchCodePoint(text, character, false);
}

char* VORKMBstrrchr_8(const char* text, unsigned int character)
{
    return SearchCodePoint(text, character, true);
}

size_t VORKMBstrcspn_8(const char* text, const char* set)
{
    if (!text)
        return 0;
    int32_t members[64];
    int count = 0;
    if (set) {
        const int setLength = static_cast<int>(std::strlen(set));
        int i = 0;
        while (i < setLength && count < 64) {
            const int n = DecodeWellFormed(Bytes(set), i, setLength, &members[count]);
            if (n < 0)
                break;
            ++count;
            i += n;
        }
    }
    const int length = static_cast<int>(std::strlen(text));
    int i = 0;
    while (i < length) {
        int32_t c = 0;
        int n = DecodeWellFormed(Bytes(text), i, length, &c);
        if (n < 0) {
            c = Bytes(text)[i];
            n = 1;
        }
        for (int k = 0; k < count; ++k)
            if (members[k] == c)
                return static_cast<size_t>(i);
        i += n;
    }
    return static_cast<size_t>(length);
}

char* VORKMBstrncpy_8(char* target, const char* source, size_t size)
{
    if (!target || size == 0)
        return target;
    size_t length = 0;
    if (source) {
        length = strnlen(source, size);
        if (length > static_cast<size_t>(INT_MAX))
            length = static_cast<size_t>(INT_MAX);
        length = static_cast<size_t>(TrimToCharacters(source, static_cast<int>(length)));
        std::memmove(target, source, length);
    }
    std::memset(target + length, 0, size - length);
    return target;
}

int VORKMBstrnicmp_8(const char* a, const char* b, size_t size)
{
    const int length = ClampLength(size);
    return VORKMBCompare_8(a, length, b, length, nullptr);
}

int VORKMBqstricmp_8(const char* a, int lengthA, const char* b, int lengthB, int* badInput)
{
    return VORKMBCompare_8(a, lengthA, b, lengthB, badInput) == 0 ? 1 : 0;
}

size_t VORKMBPreviousIndex_8(const char* text, size_t index)
{
    if (!text || index < 1)
        return index;
    if (index > static_cast<size_t>(INT_MAX))
        return index - 1;
    bool isCharacter = false;
    const int start = PreviousStart(text, static_cast<int>(index), &isCharacter);
    return isCharacter ? static_cast<size_t>(start) : index - 1;
}

char* VORKMBAnsiPrev_8(const char* start, const char* position)
{
    if (!start || !position || position <= start)
        return const_cast<char*>(position);
    return const_cast<char*>(start +
                             VORKMBPreviousIndex_8(start, static_cast<size_t>(position - start)));
}

} // namespace ZRMem
