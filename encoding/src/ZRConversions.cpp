// Conversions between UTF-8, UTF-16, code page text and generic text, in
// three forms: into a fixed buffer, into a string, into a new array.
#include "ZREncodingInternal.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace ZRMem {

using namespace Internal;

namespace {

// How a fixed-buffer call fits its text. Fitting happens only with a target
// and a positive capacity; then room is the capacity less the unit kept for
// the terminator in terminated mode.
struct Plan {
    bool terminated;
    bool fitting;
    int room;
};

Plan MakePlan(const void* target, int capacity, int sourceLength)
{
    Plan plan;
    plan.terminated = sourceLength < 0;
    plan.fitting = target != nullptr && capacity > 0;
    plan.room = plan.fitting ? (plan.terminated ? capacity - 1 : capacity) : 0;
    return plan;
}

// What ICU reported for one conversion.
struct Outcome {
    int32_t needed;
    UErrorCode err;
    bool substituted;
};

bool HardFailure(UErrorCode err)
{
    return U_FAILURE(err) && err != U_BUFFER_OVERFLOW_ERROR;
}

// Applies the fitting rule to the converted text. cut(room) gives the length
// of the whole characters within room and blanks what lies behind them.
template <class Unit, class Cut>
int Complete(const Plan& plan, Unit* target, const Outcome& outcome, int* resultCode, Cut cut)
{
    int code = CodeOf(outcome.err, outcome.substituted);
    int length = outcome.needed;
    if (HardFailure(outcome.err)) {
        NoteIfNoMemory(outcome.err);
        code = outcome.err == U_MEMORY_ALLOCATION_ERROR ? kNoScratch : kTrouble;
        length = 0;
    }
    if (plan.fitting) {
        if (length < plan.room) {
            if (!plan.terminated)
                target[length] = static_cast<Unit>(' ');
        } else if (length > plan.room) {
            length = cut(plan.room);
        }
        if (plan.terminated)
            target[length] = 0;
    }
    if (resultCode)
        *resultCode = code;
    return length;
}

void Blank(char* target, int from, int to)
{
    if (to > from)
        std::memset(target + from, ' ', static_cast<size_t>(to - from));
}

// UTF-16 target: a surrogate pair cut in two leaves a space for its lead.
int CutUTF16(unsigned short* target, int room)
{
    int length = room;
    if (length > 0 && U16_IS_LEAD(target[length - 1])) {
        --length;
        target[length] = ' ';
    }
    return length;
}

// UTF-8 target filled to room: drop a sequence cut short at the end.
int CutFilledUTF8(char* target, int room)
{
    int length = room;
    int start = room - 1;
    while (start > 0 && start > room - 4 && U8_IS_TRAIL(static_cast<uint8_t>(target[start])))
        --start;
    if (start >= 0 && U8_IS_LEAD(static_cast<uint8_t>(target[start])) &&
        start + 1 + U8_COUNT_TRAIL_BYTES(static_cast<uint8_t>(target[start])) > room)
        length = start;
    Blank(target, length, room);
    return length;
}

// UTF-8 of a well-formed UTF-16 text: bytes of the whole characters that fit
// in room (ICU writes whole characters only).
int UTF8PrefixLength(const unsigned short* source, int sourceLength, int room)
{
    int bytes = 0;
    for (int i = 0; sourceLength < 0 ? source[i] != 0 : i < sourceLength;) {
        UChar32 c = source[i];
        int units = 1;
        if (U16_IS_LEAD(c) && (sourceLength < 0 || i + 1 < sourceLength) &&
            U16_IS_TRAIL(source[i + 1]))
            units = 2;
        const int n = units == 2 ? 4 : U8_LENGTH(c);
        if (bytes + n > room)
            break;
        bytes += n;
        i += units;
    }
    return bytes;
}

// Code page target: whole characters of the converter within room.
int CutCodePage(UConverter* cnv, char* target, int room)
{
    const int length = WholeCharsLen(cnv, target, room);
    Blank(target, length, room);
    return length;
}

// A null source is an empty text, counted or terminated as the call says.
template <class Unit>
void NormalizeSource(const Unit*& source, int& sourceLength)
{
    static const Unit kEmpty[1] = {0};
    if (!source) {
        source = kEmpty;
        if (sourceLength > 0)
            sourceLength = 0;
    }
}

// No converter to be had: no memory for it (code 2) or trouble, and the
// target as for an empty text.
template <class Unit>
int Fail(const Plan& plan, Unit* target, int* resultCode, bool noMemory)
{
    Outcome outcome{0, noMemory ? U_MEMORY_ALLOCATION_ERROR : U_INVALID_STATE_ERROR, false};
    return Complete(plan, target, outcome, resultCode, [](int) { return 0; });
}

// Copies bytes where nothing is to be converted: the smaller of the capacity
// and the source's length, and in terminated mode a NUL behind them, so that
// there the target holds one byte more than the capacity.
int ByteCopy(char* target, int capacity, const char* source, int sourceLength, int* resultCode)
{
    if (resultCode)
        *resultCode = kConverted;
    size_t length = 0;
    if (source)
        length = sourceLength < 0 ? std::strlen(source) : static_cast<size_t>(sourceLength);
    if (length > static_cast<size_t>(INT_MAX))
        length = static_cast<size_t>(INT_MAX);
    if (!target || capacity <= 0)
        return static_cast<int>(length);
    const int count = static_cast<int>(length) < capacity ? static_cast<int>(length) : capacity;
    if (count > 0)
        std::memmove(target, source, static_cast<size_t>(count));
    if (sourceLength < 0)
        target[count] = '\0';
    return count;
}

UChar* AsUChar(unsigned short* p)
{
    return reinterpret_cast<UChar*>(p);
}

const UChar* AsUChar(const unsigned short* p)
{
    return reinterpret_cast<const UChar*>(p);
}

} // namespace

// ---------------------------------------------------------------------------
// Fixed-buffer form
// ---------------------------------------------------------------------------

int VORKMB8to16(unsigned short* target, int capacity, const char* source, int sourceLength,
                int* resultCode)
{
    NormalizeSource(source, sourceLength);
    const Plan plan = MakePlan(target, capacity, sourceLength);
    Outcome outcome{0, U_ZERO_ERROR, false};
    u_strFromUTF8(plan.fitting ? AsUChar(target) : nullptr, plan.room, &outcome.needed, source,
                  sourceLength, &outcome.err);
    return Complete(plan, target, outcome, resultCode,
                    [&](int room) { return CutUTF16(target, room); });
}

int VORKMB16to8(char* target, int capacity, const unsigned short* source, int sourceLength,
                int* resultCode)
{
    NormalizeSource(source, sourceLength);
    const Plan plan = MakePlan(target, capacity, sourceLength);
    Outcome outcome{0, U_ZERO_ERROR, false};
    u_strToUTF8(plan.fitting ? target : nullptr, plan.room, &outcome.needed, AsUChar(source),
                sourceLength, &outcome.err);
    return Complete(plan, target, outcome, resultCode, [&](int room) {
        const int length = UTF8PrefixLength(source, sourceLength, room);
        Blank(target, length, room);
        return length;
    });
}

namespace {

// A fixed-buffer conversion through a converter (null: a private clone of the
// default one). run(cnv, target or null, room, err) converts and gives the
// length the text needs; cut(cnv, room) fits a text that overran.
template <class Unit, class Run, class Cut>
int ThroughConverter(void* converter, Unit* target, int capacity, int sourceLength, int* resultCode,
                     Run run, Cut cut)
{
    const Plan plan = MakePlan(target, capacity, sourceLength);
    const unsigned failures = NoMemoryCount();
    ConverterLease lease(converter);
    if (!lease.get())
        return Fail(plan, target, resultCode, NoMemoryCount() != failures);
    Outcome outcome{0, U_ZERO_ERROR, false};
    const unsigned before = SubstitutionCount();
    outcome.needed = run(lease.get(), plan.fitting ? target : nullptr, plan.room, &outcome.err);
    outcome.substituted = SubstitutionCount() != before;
    return Complete(plan, target, outcome, resultCode,
                    [&](int room) { return cut(lease.get(), room); });
}

} // namespace

int VORKMBCodePageto16(void* converter, unsigned short* target, int capacity, const char* source,
                       int sourceLength, int* resultCode)
{
    NormalizeSource(source, sourceLength);
    return ThroughConverter(
        converter, target, capacity, sourceLength, resultCode,
        [&](UConverter* cnv, unsigned short* dest, int room, UErrorCode* err) {
            return ucnv_toUChars(cnv, AsUChar(dest), room, source, sourceLength, err);
        },
        [&](UConverter*, int room) { return CutUTF16(target, room); });
}

int VORKMB16toCodePage(void* converter, char* target, int capacity, const unsigned short* source,
                       int sourceLength, int* resultCode)
{
    NormalizeSource(source, sourceLength);
    return ThroughConverter(
        converter, target, capacity, sourceLength, resultCode,
        [&](UConverter* cnv, char* dest, int room, UErrorCode* err) {
            return ucnv_fromUChars(cnv, dest, room, AsUChar(source), sourceLength, err);
        },
        [&](UConverter* cnv, int room) { return CutCodePage(cnv, target, room); });
}

int VORKMBCodePageto8(void* converter, char* target, int capacity, const char* source,
                      int sourceLength, int* resultCode)
{
    NormalizeSource(source, sourceLength);
    return ThroughConverter(
        converter, target, capacity, sourceLength, resultCode,
        [&](UConverter* cnv, char* dest, int room, UErrorCode* err) {
            ucnv_resetToUnicode(cnv);
            return ucnv_toAlgorithmic(UCNV_UTF8, cnv, dest, room, source, sourceLength, err);
        },
        [&](UConverter*, int room) { return CutFilledUTF8(target, room); });
}

int VORKMB8toCodePage(void* converter, char* target, int capacity, const char* source,
                      int sourceLength, int* resultCode)
{
    NormalizeSource(source, sourceLength);
    return ThroughConverter(
        converter, target, capacity, sourceLength, resultCode,
        [&](UConverter* cnv, char* dest, int room, UErrorCode* err) {
            ucnv_resetFromUnicode(cnv);
            const int32_t needed =
                ucnv_fromAlgorithmic(cnv, UCNV_UTF8, dest, room, source, sourceLength, err);
            // ICU reads ill-formed UTF-8 as U+FFFD without a word, which a
            // code page that has U+FFFD takes in silently: it is trouble all
            // the same.
            if (U_SUCCESS(*err) && !IsWellFormedUTF8(source, sourceLength))
                *err = kSubstIllegal;
            return needed;
        },
        [&](UConverter* cnv, int room) { return CutCodePage(cnv, target, room); });
}

int VORKMBGenericto16(unsigned short* target, int capacity, const char* source, int sourceLength,
                      int* resultCode)
{
    return qUTF8mode()
               ? VORKMB8to16(target, capacity, source, sourceLength, resultCode)
               : VORKMBCodePageto16(nullptr, target, capacity, source, sourceLength, resultCode);
}

int VORKMB16toGeneric(char* target, int capacity, const unsigned short* source, int sourceLength,
                      int* resultCode)
{
    return qUTF8mode()
               ? VORKMB16to8(target, capacity, source, sourceLength, resultCode)
               : VORKMB16toCodePage(nullptr, target, capacity, source, sourceLength, resultCode);
}

int VORKMBGenericto8(char* target, int capacity, const char* source, int sourceLength,
                     int* resultCode)
{
    return qUTF8mode()
               ? ByteCopy(target, capacity, source, sourceLength, resultCode)
               : VORKMBCodePageto8(nullptr, target, capacity, source, sourceLength, resultCode);
}

int VORKMB8toGeneric(char* target, int capacity, const char* source, int sourceLength,
                     int* resultCode)
{
    return qUTF8mode()
               ? ByteCopy(target, capacity, source, sourceLength, resultCode)
               : VORKMB8toCodePage(nullptr, target, capacity, source, sourceLength, resultCode);
}

int VORKMBGenerictoCodePage(void* converter, char* target, int capacity, const char* source,
                            int sourceLength, int* resultCode)
{
    return qUTF8mode()
               ? VORKMB8toCodePage(converter, target, capacity, source, sourceLength, resultCode)
               : ByteCopy(target, capacity, source, sourceLength, resultCode);
}

int VORKMBCodePagetoGeneric(void* converter, char* target, int capacity, const char* source,
                            int sourceLength, int* resultCode)
{
    return qUTF8mode()
               ? VORKMBCodePageto8(converter, target, capacity, source, sourceLength, resultCode)
               : ByteCopy(target, capacity, source, sourceLength, resultCode);
}

// ---------------------------------------------------------------------------
// String form
// ---------------------------------------------------------------------------

namespace {

// Converts source into target through a fixed-buffer conversion in counted
// mode, with room for `units` target units. Target and source may be one
// object. Small texts are converted on the stack and assigned. A larger text
// goes straight into a target that already holds nearly the room (a target
// reused for like texts): what it holds is overwritten, and only the
// shortfall is filled first. Otherwise the room is an array left
// uninitialised and the text is copied into the target, since filling a room
// several times the text (three UTF-8 bytes for each code page byte) costs
// more than copying the text once.
template <size_t StackUnits, class Out, class In, class Convert>
int ToString(Out& target, const In& source, long long units, Convert convert)
{
    typedef typename Out::value_type Unit;
    if (source.size() > static_cast<size_t>(INT_MAX) || units > INT_MAX) {
        target.clear();
        return kNoScratch;
    }
    int code = kConverted;
    const int room = static_cast<int>(units);
    const int sourceLength = static_cast<int>(source.size());
    try {
        if (units <= static_cast<long long>(StackUnits)) {
            Unit scratch[StackUnits];
            const int length = convert(scratch, room, source.data(), sourceLength, &code);
            target.assign(scratch, static_cast<size_t>(length));
            return code;
        }
        const bool same = static_cast<const void*>(&target) == static_cast<const void*>(&source);
        const size_t size = static_cast<size_t>(room);
        if (!same && target.size() + size / 4 >= size) {
            if (target.size() < size)
                target.resize(size);
            const int length = convert(&target[0], room, source.data(), sourceLength, &code);
            target.resize(static_cast<size_t>(length));
            return code;
        }
        std::unique_ptr<Unit[]> scratch(new Unit[size]);
        const int length = convert(scratch.get(), room, source.data(), sourceLength, &code);
        target.assign(scratch.get(), static_cast<size_t>(length));
        return code;
    } catch (const std::bad_alloc&) {
        NoteNoMemory();
        target.clear();
        return kNoScratch;
    }
}

// Room for n source units at factor target units each, and one more.
long long Room(size_t n, long long factor)
{
    return factor * static_cast<long long>(n) + 1;
}

// Room for code page text from n UTF-16 units and a terminating NUL, the one
// rule of every conversion into a code page: ICU's bound for a string of n
// units in the converter (its widest character, shift sequences included,
// for n + 10 units; UCNV_GET_MAX_BYTES_FOR_STRING), which holds any such
// text. Without a converter (`converter` null and no default one) the
// conversion fails anyway; four bytes a unit then.
long long CodePageRoom(void* converter, size_t n)
{
    const UConverter* cnv = converter ? static_cast<UConverter*>(converter) : DefaultConverter();
    if (!cnv)
        return 4 * static_cast<long long>(n) + 1;
    return (static_cast<long long>(n) + 10) * ucnv_getMaxCharSize(cnv) + 1;
}

} // namespace

int VORKMBU8ToU16(U16String& target, const std::string& source)
{
    return ToString<1025>(target, source, Room(source.size(), 1), VORKMB8to16);
}

int VORKMBU16ToU8(std::string& target, const U16String& source)
{
    return ToString<4097>(target, source, Room(source.size(), 4), VORKMB16to8);
}

int VORKMBCodePageToU16(void* converter, U16String& target, const std::string& source)
{
    return ToString<1025>(target, source, Room(source.size(), 1),
                          [converter](unsigned short* t, int c, const char* s, int n, int* r) {
                              return VORKMBCodePageto16(converter, t, c, s, n, r);
                          });
}

int VORKMBU16ToCodePage(void* converter, std::string& target, const U16String& source)
{
    return ToString<4097>(target, source, CodePageRoom(converter, source.size()),
                          [converter](char* t, int c, const unsigned short* s, int n, int* r) {
                              return VORKMB16toCodePage(converter, t, c, s, n, r);
                          });
}

int VORKMBCodePageToU8(void* converter, std::string& target, const std::string& source)
{
    return ToString<3073>(target, source, Room(source.size(), 3),
                          [converter](char* t, int c, const char* s, int n, int* r) {
                              return VORKMBCodePageto8(converter, t, c, s, n, r);
                          });
}

int VORKMBU8ToCodePage(void* converter, std::string& target, const std::string& source)
{
    return ToString<1025>(target, source, Room(source.size(), 1),
                          [converter](char* t, int c, const char* s, int n, int* r) {
                              return VORKMB8toCodePage(converter, t, c, s, n, r);
                          });
}

namespace {

int Assign(std::string& target, const std::string& source)
{
    try {
        target = source;
        return kConverted;
    } catch (const std::bad_alloc&) {
        NoteNoMemory();
        target.clear();
        return kNoScratch;
    }
}

} // namespace

int VORKMBGenericToU16(void* converter, U16String& target, const std::string& source)
{
    return qUTF8mode() ? VORKMBU8ToU16(target, source)
                       : VORKMBCodePageToU16(converter, target, source);
}

int VORKMBGenericToU16(U16String& target, const std::string& source)
{
    return VORKMBGenericToU16(nullptr, target, source);
}

int VORKMBU16ToGeneric(void* converter, std::string& target, const U16String& source)
{
    return qUTF8mode() ? VORKMBU16ToU8(target, source)
                       : VORKMBU16ToCodePage(converter, target, source);
}

int VORKMBU16ToGeneric(std::string& target, const U16String& source)
{
    return VORKMBU16ToGeneric(nullptr, target, source);
}

int VORKMBGenericToU8(void* converter, std::string& target, const std::string& source)
{
    return qUTF8mode() ? Assign(target, source) : VORKMBCodePageToU8(converter, target, source);
}

int VORKMBGenericToU8(std::string& target, const std::string& source)
{
    return VORKMBGenericToU8(nullptr, target, source);
}

int VORKMBU8ToGeneric(void* converter, std::string& target, const std::string& source)
{
    return qUTF8mode() ? Assign(target, source) : VORKMBU8ToCodePage(converter, target, source);
}

int VORKMBU8ToGeneric(std::string& target, const std::string& source)
{
    return VORKMBU8ToGeneric(nullptr, target, source);
}

int VORKMBCodePageToGeneric(void* converter, std::string& target, const std::string& source)
{
    return qUTF8mode() ? VORKMBCodePageToU8(converter, target, source) : Assign(target, source);
}

int VORKMBGenericToCodePage(void* converter, std::string& target, const std::string& source)
{
    return qUTF8mode() ? VORKMBU8ToCodePage(converter, target, source) : Assign(target, source);
}

// ---------------------------------------------------------------------------
// New-array form
// ---------------------------------------------------------------------------

namespace {

template <class Unit>
size_t TextLength(const Unit* source)
{
    size_t n = 0;
    while (source[n] != 0)
        ++n;
    return n;
}

// Converts a NUL-terminated source in terminated mode into scratch room of
// the given size, then hands the text out in an array of its own length.
template <class Out, class In, class Convert>
Out* ToNewArray(const In* source, long long scratch, Convert convert)
{
    if (!source || scratch > INT_MAX)
        return nullptr;
    std::unique_ptr<Out[]> room(new (std::nothrow) Out[static_cast<size_t>(scratch)]);
    if (!room)
        return nullptr;
    int code = kConverted;
    const int length = convert(room.get(), static_cast<int>(scratch), source, -1, &code);
    // Without memory for the converter the text would be empty: no text.
    if (code == kNoScratch)
        return nullptr;
    Out* result = new (std::nothrow) Out[static_cast<size_t>(length) + 1];
    if (!result)
        return nullptr;
    std::memcpy(result, room.get(), static_cast<size_t>(length) * sizeof(Out));
    result[length] = 0;
    return result;
}

} // namespace

unsigned short* VORKMBTranscodeU8(const char* source)
{
    if (!source)
        return nullptr;
    return ToNewArray<unsigned short>(source, static_cast<long long>(std::strlen(source)) + 1,
                                      VORKMB8to16);
}

char* VORKMBTranscodeU8(const unsigned short* source)
{
    if (!source)
        return nullptr;
    return ToNewArray<char>(source, 4 * static_cast<long long>(TextLength(source)) + 1,
                            VORKMB16to8);
}

unsigned short* VORKMBTranscodeCodePage(const char* source)
{
    if (!source)
        return nullptr;
    return ToNewArray<unsigned short>(source, static_cast<long long>(std::strlen(source)) + 1,
                                      [](unsigned short* t, int c, const char* s, int n, int* r) {
                                          return VORKMBCodePageto16(nullptr, t, c, s, n, r);
                                      });
}

char* VORKMBTranscodeCodePage(const unsigned short* source)
{
    if (!source)
        return nullptr;
    return ToNewArray<char>(source, CodePageRoom(nullptr, TextLength(source)),
                            [](char* t, int c, const unsigned short* s, int n, int* r) {
                                return VORKMB16toCodePage(nullptr, t, c, s, n, r);
                            });
}

unsigned short* VORKMBTranscodeGeneric(const char* source)
{
    return qUTF8mode() ? VORKMBTranscodeU8(source) : VORKMBTranscodeCodePage(source);
}

char* VORKMBTranscodeGeneric(const unsigned short* source)
{
    return qUTF8mode() ? VORKMBTranscodeU8(source) : VORKMBTranscodeCodePage(source);
}

} // namespace ZRMem
