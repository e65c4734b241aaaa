// Encoding services of zrparsexmlr: multi-byte string functions and
// conversions that keep text correct between UTF-8, UTF-16 and a code page.
//
// Three kinds of text meet here:
//   - UTF-8 text (functions with the suffix _8 or the names U8 / 8),
//   - code page text, in the code page of a converter (suffix _C, CodePage),
//   - generic text (suffix _A, Generic): the encoding the process works in,
//     UTF-8 while the UTF-8 mode is on (the default), else the code page of
//     the default converter.
// UTF-16 text is held in unsigned short units.
//
// A converter is handed around as void* (a UConverter* of ICU). A null
// converter means a private clone of the default converter: no conversion
// ever runs through the shared default converter itself, so its state is
// never disturbed.
//
// Encoding result codes (the int of every conversion that reports one):
//   0  the text was converted whole
//   1  the output did not fit (the text was cut to whole characters)
//   2  scratch memory was not to be had (string forms only)
//   3  any other conversion failure, or a character was substituted by "?"
//
// Lengths and indexes are in units of the text (bytes for char text). An int
// length that is negative means a NUL-terminated text. Null text pointers are
// taken as empty texts unless an operation says otherwise.
//
// The services keep process-wide state (the UTF-8 mode, the default converter,
// the system encoding); the first use of each is safe from several threads
// (it takes a lock once), everything else is for one thread at a time per
// object.
#ifndef ZRPARSEXMLR_ZRMEM_H
#define ZRPARSEXMLR_ZRMEM_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrcommonr/ZRNamespaces.h>

#include <cstddef>
#include <string>

struct UConverter;

namespace ZRMEM_NAMESPACE {

// UTF-16 text as the encoding services hold it.
typedef std::basic_string<unsigned short> U16String;

// ---------------------------------------------------------------------------
// Encoding state
// ---------------------------------------------------------------------------

// Prepares the C library's locale once per process: numbers are formatted in
// the "C" locale, and a process still in the "C" character locale is moved to
// "en_US" (its environment too). Later calls do nothing.
ZRXPRS_API void EnableLocale();

// The encoding of the C library's character locale, worked out once per
// process: the text behind the first "." of the locale name, without an
// "@modifier" that the platform may add ("zh_CN.GBK" gives "GBK",
// "de_DE.ISO-8859-15@euro" gives "ISO-8859-15"); "CP1252" when the name has no
// ".". Valid until process end.
ZRXPRS_API const char* SystemEncoding();

// 1 while generic text is UTF-8 (from process start), else 0.
ZRXPRS_API int qUTF8mode();

// Turns the UTF-8 mode on (non-zero) or off (0). Only the flag changes: no
// converter is touched and no text already held is converted.
ZRXPRS_API void SetUTF8mode(int on);

// The default converter: the converter of the host's code page, which gives
// code page text (and generic text in code page mode) its meaning. It is
// opened on first need, for the C library's character locale of that moment:
// its code set (nl_langinfo(CODESET): "GBK", "CP1252", "UTF-8", ...) when the
// host has set a locale other than "C" or "POSIX", else ICU's default, which
// is UTF-8. So the _C primitives, whose lead bytes come from that locale, and
// the conversions agree on what a character is. Set the locale before the
// first use; a later change of locale does not change the converter.
//
// Never closed, never replaced; the caller must not close it and must not
// convert through it (clone it). Null if it cannot be opened (ICU does not
// know the locale's code set); the next need tries again, and code page
// conversions without a converter report code 3 meanwhile.
//
// Its first opening takes a lock, so that threads that need it at the same
// moment all get the same converter and the ID counts one opening: objects of
// the library may be used on several threads side by side, and each of them
// may be the first to need it. Once it is open, finding it takes no lock.
ZRXPRS_API UConverter* VORKMBGetDefaultConverter();

// Raised by one each time the default converter is opened (or an attempt
// fails); 0 before any. Does not open the converter.
ZRXPRS_API int VORKMBDefaultConverterID();

// ---------------------------------------------------------------------------
// Converters
// ---------------------------------------------------------------------------

// Opens a converter; the caller closes it with ucnv_close. Null on failure.
//   - null name: a converter of the default converter's code page, as a second
//     independent converter; with no default converter yet, the host's code
//     page as VORKMBGetDefaultConverter tells it (the character locale's code
//     set, or UTF-8 in the "C" locale), and this does not create the default
//     converter.
//   - a name that is wholly a decimal number from 1 to 99999 ("1252",
//     "01252"): a code page number, resolved to its IANA name through the
//     table of well-known code pages, then "windows-NNN", then "cpNNN"; a
//     number that nothing fits gives null.
//   - any other name goes to ICU as it is; "windows-28591" (any case), which
//     ICU does not know, opens "ISO-8859-1".
// Every converter these functions open substitutes "?" for what it cannot
// convert (an unassigned character, an illegal or an irregular sequence), and
// such a substitution makes the conversion report code 3.
ZRXPRS_API void* VORKMBConverterNew_C(const char* name);
// The same, with the name given in UTF-8 (at most 59 bytes in the code page).
ZRXPRS_API void* VORKMBConverterNew_8(const char* name);
// The same, with the name given as generic text.
ZRXPRS_API void* VORKMBConverterNew_A(const char* name);

// Compare two texts without regard to case, character by character (code
// points through u_tolower). A text ends at its length or at a NUL, a negative
// length meaning at the NUL alone. A byte that is no valid character compares
// as its raw value and sets *badInput (if not null) to 3; else *badInput is 0.
// Result -1, 0 or 1. _8: UTF-8 text; _C: code page text of the default
// converter.
ZRXPRS_API int VORKMBCompare_8(const char* a, int lengthA, const char* b, int lengthB,
                               int* badInput);
ZRXPRS_API int VORKMBCompare_C(const char* a, int lengthA, const char* b, int lengthB,
                               int* badInput);

// ---------------------------------------------------------------------------
// Multi-byte string primitives
// ---------------------------------------------------------------------------
// The standard string functions for text in which a character may span
// several bytes. _8: UTF-8. _C: code page text, whose lead bytes come from the
// C library's current locale and whose code points from the default
// converter; a lead byte followed by the terminator stands alone. _A: generic
// text, forwarded to _8 or _C by the UTF-8 mode.

// Bytes of the character at p: by its lead byte, cut short at a NUL (_8); 2 for
// a lead byte with a next byte, else 1 (_C). 0 for a null pointer.
ZRXPRS_API size_t VORKMBmbclen_8(const char* p);
ZRXPRS_API size_t VORKMBmbclen_C(const char* p);

// Bytes of the character at p within the bytes available, -1 if it is not a
// valid character there (UTF-8: ill-formed, or a noncharacter); 0 for a null
// pointer, an empty string or no bytes available (_8). _C is the C library's
// mblen for the current locale.
ZRXPRS_API int VORKMBmblen_8(const char* p, size_t available);
ZRXPRS_API int VORKMBmblen_C(const char* p, size_t available);

// The next character.
ZRXPRS_API char* VORKMBstrinc_8(const char* p);
ZRXPRS_API char* VORKMBstrinc_C(const char* p);
ZRXPRS_API char* VORKMBstrinc_A(const char* p);

// First / last occurrence of a character, or null. 0 finds the terminator.
// _8 searches a code point; _C compares one byte at character starts.
ZRXPRS_API char* VORKMBstrchr_8(const char* text, unsigned int character);
ZRXPRS_API char* VORKMBstrchr_C(const char* text, unsigned int character);
ZRXPRS_API char* VORKMBstrchr_A(const char* text, unsigned int character);
ZRXPRS_API char* VORKMBstrrchr_8(const char* text, unsigned int character);
ZRXPRS_API char* VORKMBstrrchr_C(const char* text, unsigned int character);
ZRXPRS_API char* VORKMBstrrchr_A(const char* text, unsigned int character);

// Bytes before the first character of text that is in set. _8 considers the
// first 64 characters of the set (up to its first ill-formed sequence); _C the
// whole set.
ZRXPRS_API size_t VORKMBstrcspn_8(const char* text, const char* set);
ZRXPRS_API size_t VORKMBstrcspn_C(const char* text, const char* set);
ZRXPRS_API size_t VORKMBstrcspn_A(const char* text, const char* set);

// strncpy that never leaves part of a character in the target: copies at most
// size bytes of whole characters and fills the rest of the size with zeros (a
// full target has no terminator). _8 also drops a trailing ill-formed sequence
// or noncharacter, and a null source gives an all-zero target; _C leaves the
// target alone for a null source. The ranges may overlap.
ZRXPRS_API char* VORKMBstrncpy_8(char* target, const char* source, size_t size);
ZRXPRS_API char* VORKMBstrncpy_C(char* target, const char* source, size_t size);
ZRXPRS_API char* VORKMBstrncpy_A(char* target, const char* source, size_t size);

// Case-blind comparison of at most size bytes of each: -1, 0 (equal) or 1.
ZRXPRS_API int VORKMBstrnicmp_8(const char* a, const char* b, size_t size);
ZRXPRS_API int VORKMBstrnicmp_C(const char* a, const char* b, size_t size);
ZRXPRS_API int VORKMBstrnicmp_A(const char* a, const char* b, size_t size);

// Case-blind equality: 1 if equal, else 0. Lengths and flag as VORKMBCompare.
ZRXPRS_API int VORKMBqstricmp_8(const char* a, int lengthA, const char* b, int lengthB,
                                int* badInput);
ZRXPRS_API int VORKMBqstricmp_C(const char* a, int lengthA, const char* b, int lengthB,
                                int* badInput);
ZRXPRS_API int VORKMBqstricmp_A(const char* a, int lengthA, const char* b, int lengthB,
                                int* badInput);

// The start of the character before position (position itself when it is the
// start, or when either pointer is null or position lies before start).
ZRXPRS_API char* VORKMBAnsiPrev_8(const char* start, const char* position);
ZRXPRS_API char* VORKMBAnsiPrev_C(const char* start, const char* position);
ZRXPRS_API char* VORKMBAnsiPrev_A(const char* start, const char* position);

// UTF-8: index of the character before index; index - 1 when the bytes before
// it are no character (ill-formed or a noncharacter); index itself below 1.
ZRXPRS_API size_t VORKMBPreviousIndex_8(const char* text, size_t index);

// Code page: index of the start of the character that holds byte index (the
// lead byte's index for a trail byte); the string's length for an index at or
// past it; 0 for a null text.
ZRXPRS_API size_t VORKMBFindStart_C(const char* text, size_t index);

// Code page: reads the character at text[start] (end: limit of the text, or
// negative for its NUL) with the default converter, stores its code point in
// *codePoint (if not null) and gives the bytes used. At the end of the text
// (start at or past end, a NUL, a null text) it stores 0 and gives 0; an
// invalid or unmappable character, or a negative start, stores 0 and gives -1.
ZRXPRS_API int VORKMBU32Get_C(int* codePoint, const char* text, int start, int end);

// 1 if byte starts a two-byte character in the current locale, else 0 (also
// for values above 255).
ZRXPRS_API int VORKMBIsLeadByte_C(unsigned int byte);

// ---------------------------------------------------------------------------
// Conversions
// ---------------------------------------------------------------------------
// Memory: no conversion throws. Where the converter (a clone of the default
// one, or a new one) or the scratch room can't be had, because memory ran out
// in ICU or in the library, the result code is 2, never 3; the functions that
// open a converter and the new-array forms give null.
//
// Fixed-buffer form (lower-case "to"): target, capacity in target units,
// source, source length in source units (negative: NUL-terminated), and an
// optional int* for the result code. The result is the length written, in
// target units, without terminator.
//
// Fitting rule:
//   - terminated mode (negative source length): one unit of a positive
//     capacity is kept for a NUL, which always follows the text;
//   - counted mode: a text that fits with room to spare is followed by one
//     space (not counted); a text that fits exactly gets nothing behind it;
//   - a text that does not fit is cut to whole characters (code 1): in UTF-16
//     a cut surrogate pair becomes a space; in UTF-8 and code page targets the
//     bytes behind the text up to the capacity become spaces;
//   - a capacity of 0 or less, or a null target, writes nothing and gives the
//     length the text needs (code 1 if it is not empty).
// VORKMB8to16 and VORKMB16to8 (and what is built on them) do not substitute:
// an ill-formed UTF-8 sequence or an unpaired surrogate gives code 3 and
// length 0, and the target is treated as for an empty text. Code page
// conversions substitute "?" for bad characters, convert to the end and give
// code 3; ill-formed UTF-8 into a code page gives code 3 even where the code
// page can hold the U+FFFD that ICU reads it as. A null source is an empty
// text.
ZRXPRS_API int VORKMB8to16(unsigned short* target, int capacity, const char* source,
                           int sourceLength, int* resultCode);
ZRXPRS_API int VORKMB16to8(char* target, int capacity, const unsigned short* source,
                           int sourceLength, int* resultCode);
ZRXPRS_API int VORKMBCodePageto16(void* converter, unsigned short* target, int capacity,
                                  const char* source, int sourceLength, int* resultCode);
ZRXPRS_API int VORKMB16toCodePage(void* converter, char* target, int capacity,
                                  const unsigned short* source, int sourceLength, int* resultCode);
ZRXPRS_API int VORKMBCodePageto8(void* converter, char* target, int capacity, const char* source,
                                 int sourceLength, int* resultCode);
ZRXPRS_API int VORKMB8toCodePage(void* converter, char* target, int capacity, const char* source,
                                 int sourceLength, int* resultCode);

// Generic text. Where source and target are in the same encoding the text is
// copied byte for byte, with no regard to characters, and the code is 0 even
// when the text is cut. The copy takes the smaller of the capacity and the
// source's length (in terminated mode its strlen) and gives that count; in
// terminated mode a NUL follows the bytes copied, so unlike the conversions
// the target must then hold capacity + 1 bytes. A capacity of 0 or less (or a
// null target) copies nothing and gives the source's length.
ZRXPRS_API int VORKMBGenericto16(unsigned short* target, int capacity, const char* source,
                                 int sourceLength, int* resultCode);
ZRXPRS_API int VORKMB16toGeneric(char* target, int capacity, const unsigned short* source,
                                 int sourceLength, int* resultCode);
ZRXPRS_API int VORKMBGenericto8(char* target, int capacity, const char* source, int sourceLength,
                                int* resultCode);
ZRXPRS_API int VORKMB8toGeneric(char* target, int capacity, const char* source, int sourceLength,
                                int* resultCode);
ZRXPRS_API int VORKMBGenerictoCodePage(void* converter, char* target, int capacity,
                                       const char* source, int sourceLength, int* resultCode);
ZRXPRS_API int VORKMBCodePagetoGeneric(void* converter, char* target, int capacity,
                                       const char* source, int sourceLength, int* resultCode);

// String form (upper-case "To"): the target is replaced by the converted text
// and the result code is returned. The output room is sized from the source
// (UTF-16 from UTF-8 or code page: n + 1 units; UTF-8 from UTF-16: 4n + 1;
// code page from UTF-16: 4n + 1, or less where the converter's widest
// character needs less; UTF-8 from code page: 3n + 1; code page from UTF-8:
// n + 1 bytes); a text that overruns it is cut by the fitting rule with
// code 1. The target keeps its storage from call to call. When the room cannot be allocated (or a source is too long for an
// int length) the target is cleared and the code is 2. Target and source may
// be the same object.
ZRXPRS_API int VORKMBU8ToU16(U16String& target, const std::string& source);
ZRXPRS_API int VORKMBU16ToU8(std::string& target, const U16String& source);
ZRXPRS_API int VORKMBCodePageToU16(void* converter, U16String& target, const std::string& source);
ZRXPRS_API int VORKMBU16ToCodePage(void* converter, std::string& target, const U16String& source);
ZRXPRS_API int VORKMBCodePageToU8(void* converter, std::string& target, const std::string& source);
ZRXPRS_API int VORKMBU8ToCodePage(void* converter, std::string& target, const std::string& source);

// Generic string forms. In UTF-8 mode, routes without a code page do not
// consult the converter (VORKMBGenericToU16, VORKMBU16ToGeneric), and routes
// from generic text to UTF-8 or back are an assignment with code 0.
ZRXPRS_API int VORKMBGenericToU16(void* converter, U16String& target, const std::string& source);
ZRXPRS_API int VORKMBGenericToU16(U16String& target, const std::string& source);
ZRXPRS_API int VORKMBU16ToGeneric(void* converter, std::string& target, const U16String& source);
ZRXPRS_API int VORKMBU16ToGeneric(std::string& target, const U16String& source);
ZRXPRS_API int VORKMBGenericToU8(void* converter, std::string& target, const std::string& source);
ZRXPRS_API int VORKMBGenericToU8(std::string& target, const std::string& source);
ZRXPRS_API int VORKMBU8ToGeneric(void* converter, std::string& target, const std::string& source);
ZRXPRS_API int VORKMBU8ToGeneric(std::string& target, const std::string& source);
ZRXPRS_API int VORKMBCodePageToGeneric(void* converter, std::string& target,
                                       const std::string& source);
ZRXPRS_API int VORKMBGenericToCodePage(void* converter, std::string& target,
                                       const std::string& source);

// New-array form: converts a NUL-terminated source through a clone of the
// default converter into a new NUL-terminated array that the caller frees
// with delete[]. There is no result code: trouble shows only in the text (as
// "?" for code page conversions; ill-formed UTF-8 or UTF-16 gives an empty
// text). Null for a null source or when memory is not to be had. The room for
// code page output is sized for the widest character of the default
// converter, so the text is never cut.
ZRXPRS_API unsigned short* VORKMBTranscodeU8(const char* source);
ZRXPRS_API char* VORKMBTranscodeU8(const unsigned short* source);
ZRXPRS_API unsigned short* VORKMBTranscodeCodePage(const char* source);
ZRXPRS_API char* VORKMBTranscodeCodePage(const unsigned short* source);
ZRXPRS_API unsigned short* VORKMBTranscodeGeneric(const char* source);
ZRXPRS_API char* VORKMBTranscodeGeneric(const unsigned short* source);

} // namespace ZRMEM_NAMESPACE

#endif
