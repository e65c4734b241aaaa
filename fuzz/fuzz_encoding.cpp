// Fuzz target of the encoding services: the conversions in all forms and the
// string primitives, on fuzzer-made bytes, with fuzzer-chosen capacities.
// Buffers are exactly as large as the capacity handed over, so any write past
// them is caught by AddressSanitizer; results that break the fitting rule
// abort.
//
// Input: byte 0 picks a capacity (signed), byte 1 a code point to search for;
// the rest is the text.
#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRMem.h>

#include "ZREncodingInternal.h"

#include <unicode/ucnv.h>

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace ZRMem;

namespace {

void* gCp1252 = nullptr;

void Check(bool ok)
{
    if (!ok)
        std::abort();
}

// A fixed-buffer result fits the capacity it was given; a byte copy in
// terminated mode (byteCopy) may fill the capacity, its NUL going behind it.
void CheckLength(int length, int capacity, int sourceLength, bool byteCopy)
{
    Check(length >= 0);
    if (capacity > 0)
        Check(length <= (sourceLength < 0 && !byteCopy ? capacity - 1 : capacity));
}

// Runs one fixed-buffer conversion in counted and in terminated mode;
// convert(target, capacity, sourceLength, resultCode) picks its source. A
// byte copy gets one byte more than the capacity in terminated mode, as it
// asks.
template <class Unit, class Convert>
void FixedBuffer(int capacity, size_t countedLength, Convert convert, bool byteCopy = false)
{
    for (int sourceLength : {static_cast<int>(countedLength), -1}) {
        const size_t extra = byteCopy && sourceLength < 0 ? 1 : 0;
        std::vector<Unit> target(capacity > 0 ? static_cast<size_t>(capacity) + extra : 0);
        int code = -1;
        const int length =
            convert(target.empty() ? nullptr : target.data(), capacity, sourceLength, &code);
        CheckLength(length, capacity, sourceLength, byteCopy);
        Check(code >= 0 && code <= 3);
        if (sourceLength < 0 && capacity > 0)
            Check(target[static_cast<size_t>(length)] == 0);
    }
}

void Primitives8(const std::string& text, unsigned int character)
{
    const char* s = text.c_str();
    const size_t length = std::strlen(s);
    for (const char* p = s; *p; p = VORKMBstrinc_8(p))
        Check(VORKMBmblen_8(p, length - static_cast<size_t>(p - s)) <= 4);
    for (size_t i = 0; i <= length; ++i) {
        Check(VORKMBPreviousIndex_8(s, i) <= i);
        Check(VORKMBAnsiPrev_8(s, s + i) <= s + i);
    }
    const char* hit = VORKMBstrchr_8(s, character);
    Check(!hit || (hit >= s && hit <= s + length));
    hit = VORKMBstrrchr_8(s, character);
    Check(!hit || (hit >= s && hit <= s + length));
    const std::string set = text.substr(0, text.size() / 2);
    Check(VORKMBstrcspn_8(s, set.c_str()) <= length);
    int bad = 0;
    const int order = VORKMBCompare_8(s, -1, set.c_str(), -1, &bad);
    Check(order >= -1 && order <= 1 && (bad == 0 || bad == 3));
    Check(VORKMBqstricmp_8(s, -1, s, -1, nullptr) == 1);
    Check(VORKMBstrnicmp_8(s, set.c_str(), character % 64) >= -1);
    const size_t size = character % 16;
    std::vector<char> target(size + 1, 'Z');
    VORKMBstrncpy_8(target.data(), s, size);
    Check(target[size] == 'Z');
}

void PrimitivesC(const std::string& text, unsigned int character)
{
    const char* s = text.c_str();
    const size_t length = std::strlen(s);
    for (const char* p = s; *p; p = VORKMBstrinc_C(p))
        Check(VORKMBFindStart_C(s, static_cast<size_t>(p - s)) == static_cast<size_t>(p - s));
    for (size_t i = 0; i <= length; ++i)
        Check(VORKMBAnsiPrev_C(s, s + i) <= s + i);
    Check(!VORKMBstrchr_C(s, character) || VORKMBstrchr_C(s, character) <= s + length);
    Check(!VORKMBstrrchr_C(s, character) || VORKMBstrrchr_C(s, character) <= s + length);
    Check(VORKMBstrcspn_C(s, text.substr(text.size() / 2).c_str()) <= length);
    Check(VORKMBqstricmp_C(s, -1, s, -1, nullptr) == 1);
    int cp = 0;
    for (int i = 0; i < static_cast<int>(length);) {
        const int used = VORKMBU32Get_C(&cp, s, i, -1);
        i += used > 0 ? used : 1;
    }
    const size_t size = character % 16;
    std::vector<char> target(size + 1, 'Z');
    VORKMBstrncpy_C(target.data(), s, size);
    Check(target[size] == 'Z');
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // Code page text is GBK where the locale exists: the default converter
    // follows the character locale.
    std::setlocale(LC_ALL, "zh_CN.GBK");
    gCp1252 = VORKMBConverterNew_C("1252");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2 || size > 4096)
        return 0;
    const int capacity = static_cast<int8_t>(data[0]);
    const unsigned int character = data[1] < 0x80 ? data[1] : 0x80u + data[1] * 0x101u;
    const std::string text(reinterpret_cast<const char*>(data) + 2, size - 2);
    U16String u16((size - 2) / 2, 0);
    if (!u16.empty())
        std::memcpy(&u16[0], data + 2, u16.size() * sizeof(unsigned short));

    const char* t8 = text.c_str();
    const unsigned short* t16 = u16.c_str();
    FixedBuffer<unsigned short>(
        capacity, text.size(),
        [&](unsigned short* t, int c, int n, int* r) { return VORKMB8to16(t, c, t8, n, r); });
    FixedBuffer<char>(capacity, u16.size(),
                      [&](char* t, int c, int n, int* r) { return VORKMB16to8(t, c, t16, n, r); });
    for (void* cnv : {static_cast<void*>(nullptr), gCp1252}) {
        FixedBuffer<char>(capacity, text.size(), [&](char* t, int c, int n, int* r) {
            return VORKMBCodePageto8(cnv, t, c, t8, n, r);
        });
        FixedBuffer<char>(capacity, text.size(), [&](char* t, int c, int n, int* r) {
            return VORKMB8toCodePage(cnv, t, c, t8, n, r);
        });
        FixedBuffer<unsigned short>(capacity, text.size(),
                                    [&](unsigned short* t, int c, int n, int* r) {
                                        return VORKMBCodePageto16(cnv, t, c, t8, n, r);
                                    });
        FixedBuffer<char>(capacity, u16.size(), [&](char* t, int c, int n, int* r) {
            return VORKMB16toCodePage(cnv, t, c, t16, n, r);
        });
    }
    SetUTF8mode(capacity & 1);
    const bool byteCopy = qUTF8mode() == 1;
    FixedBuffer<char>(
        capacity, text.size(),
        [&](char* t, int c, int n, int* r) { return VORKMBGenericto8(t, c, t8, n, r); }, byteCopy);
    FixedBuffer<char>(
        capacity, text.size(),
        [&](char* t, int c, int n, int* r) { return VORKMB8toGeneric(t, c, t8, n, r); }, byteCopy);
    FixedBuffer<char>(
        capacity, text.size(),
        [&](char* t, int c, int n, int* r) {
            return VORKMBGenerictoCodePage(gCp1252, t, c, t8, n, r);
        },
        !byteCopy);

    U16String wide;
    std::string narrow;
    Check(VORKMBU8ToU16(wide, text) <= 3);
    Check(VORKMBU16ToU8(narrow, u16) <= 3);
    Check(VORKMBCodePageToU8(gCp1252, narrow, text) <= 3);
    Check(VORKMBU8ToCodePage(nullptr, narrow, text) <= 3);
    Check(VORKMBU16ToCodePage(nullptr, narrow, u16) <= 3);
    Check(VORKMBGenericToU16(wide, text) <= 3);
    std::unique_ptr<unsigned short[]> array16(VORKMBTranscodeGeneric(text.c_str()));
    std::unique_ptr<char[]> array8(VORKMBTranscodeGeneric(u16.c_str()));
    Check(array16 && array8);

    ExtNameStr name;
    name.SetU8(text);
    name.SetU16(u16);
    Check(name.GetCP().size() <= 4 * u16.size() + 1);
    SetUTF8mode(1);

    Primitives8(text, character);
    PrimitivesC(text, character);
    return 0;
}
