// Internal helpers shared by the encoding services: the default converter and
// its clones, the converter settings, the substitution record, and UTF-8
// decoding. Not exported.
#ifndef ZRPARSEXMLR_ZRENCODINGINTERNAL_H
#define ZRPARSEXMLR_ZRENCODINGINTERNAL_H

#include <zrparsexmlr/ZRMem.h>

#include <unicode/ucnv.h>
#include <unicode/utypes.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

namespace ZRMem {

// The warnings that the converter callbacks leave behind, in ICU's warning
// range: a character had no mapping / an illegal sequence, either substituted.
constexpr UErrorCode kSubstUnassigned = static_cast<UErrorCode>(-100);
constexpr UErrorCode kSubstIllegal = static_cast<UErrorCode>(-101);

// Encoding result codes.
enum ResultCode { kConverted = 0, kDidNotFit = 1, kNoScratch = 2, kTrouble = 3 };

namespace Internal {

// Returns the UTF-8 mode, the prepared locale and the system encoding to
// their start (mode on, locale not prepared, system encoding not worked out).
// The default converter and its ID stay: once made, the converter lasts to
// process end. For tests only: nothing may use the services meanwhile.
void ResetEncodingState();

// The default converter, created if need be; null if it cannot be opened.
UConverter* DefaultConverter();
// The default converter if it exists, else null; never creates it.
UConverter* ExistingDefaultConverter();

// Gives every converter the system's behaviour on bad input: "?" for what
// cannot be converted, and a warning of kSubstUnassigned / kSubstIllegal.
void ApplyConverterSettings(UConverter* cnv);

// Number of substitutions that the converter callbacks made on this thread.
// A conversion compares it before and after to see whether it substituted.
unsigned SubstitutionCount();

// Number of allocations that failed in the encoding services on this thread
// (ICU's U_MEMORY_ALLOCATION_ERROR, or std::bad_alloc): an operation whose
// converter or scratch room could not be had compares it before and after to
// tell a lack of memory (code 2) from trouble with the text (code 3).
unsigned NoMemoryCount();
void NoteNoMemory();
inline void NoteIfNoMemory(UErrorCode err)
{
    if (err == U_MEMORY_ALLOCATION_ERROR)
        NoteNoMemory();
}

// The ICU name of a code page number, or "" if none fits.
std::string CodePageName(long codePage);

// A converter for one operation: the caller's, used directly and left open,
// or a private clone of the default converter, closed at the end.
class ConverterLease {
public:
    explicit ConverterLease(void* given);
    ~ConverterLease();
    ConverterLease(const ConverterLease&) = delete;
    ConverterLease& operator=(const ConverterLease&) = delete;
    UConverter* get() const { return m_cnv; }
    bool owned() const { return m_owned; }

private:
    UConverter* m_cnv;
    bool m_owned;
};

// The code of a finished conversion: its ICU outcome, and whether a
// substitution happened on the way.
inline int CodeOf(UErrorCode err, bool substituted)
{
    if (err == U_BUFFER_OVERFLOW_ERROR)
        return kDidNotFit;
    if (err == U_MEMORY_ALLOCATION_ERROR)
        return kNoScratch;
    if (U_FAILURE(err) || err == kSubstUnassigned || err == kSubstIllegal || substituted)
        return kTrouble;
    return kConverted;
}

// Reads one character of code page text at text[i] with cnv (which is reset
// first when reset is true), no further than limit. Gives the bytes used and
// stores the code point, or gives -1 for an invalid or unmappable character
// (the converter is then reset).
int ReadCodePageChar(UConverter* cnv, const char* text, int i, int limit, int32_t* codePoint);

// VORKMBCompare_C on a converter of the caller (null: raw bytes only).
int CompareCodePage(UConverter* cnv, const char* a, int lengthA, const char* b, int lengthB,
                    int* badInput);

// Where a text of the given length ends: at the length or at a NUL that comes
// first; a negative length means at the NUL. 0 for a null text.
inline int EffectiveLength(const char* text, int length)
{
    if (!text)
        return 0;
    if (length < 0)
        return static_cast<int>(std::strlen(text));
    return static_cast<int>(strnlen(text, static_cast<size_t>(length)));
}

// A size_t length as the int lengths of the comparisons take it; a size
// beyond int means the whole NUL-terminated text.
inline int ClampLength(size_t n)
{
    return n > static_cast<size_t>(INT_MAX) ? -1 : static_cast<int>(n);
}

// The case-blind comparison of two texts, character by character:
// next(text, i, end, bad) gives the comparison value of the character at
// text[i], steps i over it and sets bad to 3 for a byte that is no character.
template <class Next>
int CompareTexts(const char* a, int lengthA, const char* b, int lengthB, int* badInput, Next next)
{
    int bad = 0;
    const int endA = EffectiveLength(a, lengthA);
    const int endB = EffectiveLength(b, lengthB);
    int i = 0, j = 0;
    int result = 0;
    while (i < endA && j < endB) {
        const int32_t ca = next(a, i, endA, bad);
        const int32_t cb = next(b, j, endB, bad);
        if (ca != cb) {
            result = ca < cb ? -1 : 1;
            break;
        }
    }
    if (result == 0)
        result = i < endA ? 1 : (j < endB ? -1 : 0);
    if (badInput)
        *badInput = bad;
    return result;
}

// Length of the longest beginning of text (length negative: up to the NUL)
// made of whole valid characters of cnv.
int WholeCharsLen(UConverter* cnv, const char* text, int length);

// UTF-8 decoding. Both give the bytes of the sequence at s[i] (i < length)
// and its code point, or -1 for an ill-formed sequence.
// WellFormed: the Unicode table of well-formed sequences.
int DecodeWellFormed(const uint8_t* s, int i, int length, int32_t* codePoint);
// Strict: also refuses noncharacters.
int DecodeStrict(const uint8_t* s, int i, int length, int32_t* codePoint);
// Whether text (length negative: up to the NUL) is well-formed UTF-8.
bool IsWellFormedUTF8(const char* text, int length);

// A code point that counts as a character: no surrogate, at most U+10FFFF,
// and no noncharacter (U+FDD0..U+FDEF, the last two of each plane).
inline bool IsCharacter(int32_t c)
{
    return c >= 0 && c <= 0x10FFFF && !(c >= 0xD800 && c <= 0xDFFF) &&
           !(c >= 0xFDD0 && c <= 0xFDEF) && (c & 0xFFFE) != 0xFFFE;
}

} // namespace Internal
} // namespace ZRMem

#endif
