// String primitives for code page text, where the C library's locale tells
// lead bytes and the default converter gives code points, and their generic
// forms, which follow the UTF-8 mode.
#include "ZREncodingInternal.h"
#include "ZRPlatform.h"

#include <climits>
#include <cstring>

namespace ZRMem {

using namespace Internal;

namespace {

// Bytes of the code page character at p: a lead byte and its trail, or one.
size_t CharLenC(const char* p)
{
    return Platform::IsLeadByte(static_cast<unsigned char>(p[0])) && p[1] != '\0' ? 2 : 1;
}

// Bytes of the character at text[i] for the search: mblen over at most 5
// bytes (never past the terminator), at least one.
size_t SearchStepC(const char* text, size_t i)
{
    const int n = Platform::MbLen(text + i, strnlen(text + i, 5));
    return n < 1 ? 1 : static_cast<size_t>(n);
}

char* SearchByteC(const char* text, unsigned int character, bool last)
{
    if (!text)
        return nullptr;
    const unsigned char wanted = static_cast<unsigned char>(character);
    const char* found = nullptr;
    size_t i = 0;
    while (text[i] != '\0') {
        if (static_cast<unsigned char>(text[i]) == wanted) {
            found = text + i;
            if (!last)
                break;
            ++i;
            continue;
        }
        i += SearchStepC(text, i);
    }
    if (!found && wanted == 0)
        found = text + i;
    return const_cast<char*>(found);
}

// Reads one set member or text character for strcspn: its code point, or its
// raw byte when the converter cannot read it.
int32_t ReadUnitC(UConverter* cnv, const char* text, int& i, int end)
{
    int32_t c = 0;
    const int used = cnv ? ReadCodePageChar(cnv, text, i, end, &c) : -1;
    if (used < 0)
        return static_cast<unsigned char>(text[i++]);
    i += used;
    return c;
}

} // namespace

size_t VORKMBmbclen_C(const char* p)
{
    return p ? CharLenC(p) : 0;
}

int VORKMBmblen_C(const char* p, size_t available)
{
    return Platform::MbLen(p, available);
}

char* VORKMBstrinc_C(const char* p)
{
    return const_cast<char*>(p + VORKMBmbclen_C(p));
}

char* VORKMBstrchr_C(const char* text, unsigned int character)
{
    return SearchByteC(text, character, false);
}

char* VORKMBstrrchr_C(const char* text, unsigned int character)
{
    return SearchByteC(text, character, true);
}

size_t VORKMBstrcspn_C(const char* text, const char* set)
{
    if (!text)
        return 0;
    const int length = static_cast<int>(std::strlen(text));
    const int setLength = set ? static_cast<int>(std::strlen(set)) : 0;
    ConverterLease lease(nullptr);
    UConverter* cnv = lease.get();
    if (cnv)
        ucnv_resetToUnicode(cnv);
    // The first 64 members are read once; the rest of the set is read anew
    // for each character of the text, so no member is lost.
    int32_t members[64];
    int count = 0;
    int rest = 0;
    while (rest < setLength && count < 64)
        members[count++] = ReadUnitC(cnv, set, rest, setLength);
    int i = 0;
    while (i < length) {
        const int start = i;
        const int32_t c = ReadUnitC(cnv, text, i, length);
        for (int k = 0; k < count; ++k)
            if (members[k] == c)
                return static_cast<size_t>(start);
        for (int j = rest; j < setLength;)
            if (ReadUnitC(cnv, set, j, setLength) == c)
                return static_cast<size_t>(start);
    }
    return static_cast<size_t>(length);
}

char* VORKMBstrncpy_C(char* target, const char* source, size_t size)
{
    if (!target || !source || size == 0)
        return target;
    size_t length = 0;
    size_t last = 0;
    while (source[length] != '\0') {
        const size_t n = CharLenC(source + length);
        if (length + n > size)
            break;
        last = length;
        length += n;
    }
    if (length > 0 && Platform::MbLen(source + last, length - last) < 1)
        length = last;
    std::memmove(target, source, length);
    std::memset(target + length, 0, size - length);
    return target;
}

int VORKMBstrnicmp_C(const char* a, const char* b, size_t size)
{
    const int length = ClampLength(size);
    return VORKMBCompare_C(a, length, b, length, nullptr);
}

int VORKMBqstricmp_C(const char* a, int lengthA, const char* b, int lengthB, int* badInput)
{
    return VORKMBCompare_C(a, lengthA, b, lengthB, badInput) == 0 ? 1 : 0;
}

size_t VORKMBFindStart_C(const char* text, size_t index)
{
    if (!text)
        return 0;
    const size_t length = std::strlen(text);
    if (index >= length)
        return length;
    size_t i = 0;
    while (i < index) {
        if (Platform::IsLeadByte(static_cast<unsigned char>(text[i])) && text[i + 1] != '\0') {
            if (i + 1 == index)
                return i;
            i += 2;
        } else {
            ++i;
        }
    }
    return index;
}

char* VORKMBAnsiPrev_C(const char* start, const char* position)
{
    if (!start || !position || position <= start)
        return const_cast<char*>(position);
    return const_cast<char*>(start +
                             VORKMBFindStart_C(start, static_cast<size_t>(position - start) - 1));
}

int VORKMBU32Get_C(int* codePoint, const char* text, int start, int end)
{
    if (codePoint)
        *codePoint = 0;
    if (!text)
        return 0;
    if (start < 0)
        return -1;
    if (end < 0)
        end = static_cast<int>(std::strlen(text));
    if (start >= end || text[start] == '\0')
        return 0;
    ConverterLease lease(nullptr);
    if (!lease.get())
        return -1;
    ucnv_resetToUnicode(lease.get());
    int32_t c = 0;
    const int used = ReadCodePageChar(lease.get(), text, start, end, &c);
    if (used < 0)
        return -1;
    if (codePoint)
        *codePoint = c;
    return used;
}

int VORKMBIsLeadByte_C(unsigned int byte)
{
    return byte <= 0xFF && Platform::IsLeadByte(static_cast<int>(byte)) ? 1 : 0;
}

// Generic text: the UTF-8 mode picks the family.

char* VORKMBstrinc_A(const char* p)
{
    return qUTF8mode() ? VORKMBstrinc_8(p) : VORKMBstrinc_C(p);
}

char* VORKMBstrchr_A(const char* text, unsigned int character)
{
    return qUTF8mode() ? VORKMBstrchr_8(text, character) : VORKMBstrchr_C(text, character);
}

char* VORKMBstrrchr_A(const char* text, unsigned int character)
{
    return qUTF8mode() ? VORKMBstrrchr_8(text, character) : VORKMBstrrchr_C(text, character);
}

size_t VORKMBstrcspn_A(const char* text, const char* set)
{
    return qUTF8mode() ? VORKMBstrcspn_8(text, set) : VORKMBstrcspn_C(text, set);
}

char* VORKMBstrncpy_A(char* target, const char* source, size_t size)
{
    return qUTF8mode() ? VORKMBstrncpy_8(target, source, size)
                       : VORKMBstrncpy_C(target, source, size);
}

int VORKMBstrnicmp_A(const char* a, const char* b, size_t size)
{
    return qUTF8mode() ? VORKMBstrnicmp_8(a, b, size) : VORKMBstrnicmp_C(a, b, size);
}

int VORKMBqstricmp_A(const char* a, int lengthA, const char* b, int lengthB, int* badInput)
{
    return qUTF8mode() ? VORKMBqstricmp_8(a, lengthA, b, lengthB, badInput)
                       : VORKMBqstricmp_C(a, lengthA, b, lengthB, badInput);
}

char* VORKMBAnsiPrev_A(const char* start, const char* position)
{
    return qUTF8mode() ? VORKMBAnsiPrev_8(start, position) : VORKMBAnsiPrev_C(start, position);
}

} // namespace ZRMem
