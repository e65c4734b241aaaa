// Opening converters from names and code-page numbers, their behaviour on bad
// input, private clones of the default converter, and reading code page text
// one character at a time.
#include "ZREncodingInternal.h"
#include "ZRPlatform.h"

#include <unicode/ucnv_cb.h>
#include <unicode/uchar.h>
#include <unicode/uversion.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ZRMem {
namespace Internal {
namespace {

// Substitutions made by the callbacks of this thread. ICU may overwrite the
// warning that a callback leaves (for instance with "not terminated" when the
// text fits its buffer exactly), so each conversion also looks at this count.
thread_local unsigned tSubstitutions = 0;
thread_local unsigned tNoMemory = 0;

bool IsSubstitutedReason(UConverterCallbackReason reason)
{
    return reason == UCNV_UNASSIGNED || reason == UCNV_ILLEGAL || reason == UCNV_IRREGULAR;
}

UErrorCode WarningFor(UConverterCallbackReason reason)
{
    return reason == UCNV_UNASSIGNED ? kSubstUnassigned : kSubstIllegal;
}

// Bad input shows as "?" rather than U+FFFD. An irregular sequence is treated
// as an illegal one.
void U_CALLCONV ToUnicodeCallback(const void* context, UConverterToUnicodeArgs* args,
                                  const char* units, int32_t length,
                                  UConverterCallbackReason reason, UErrorCode* err)
{
    UCNV_TO_U_CALLBACK_SUBSTITUTE(context, args, units, length, reason, err);
    if (U_FAILURE(*err) || !IsSubstitutedReason(reason))
        return;
    if (args->target && args->target <= args->targetLimit)
        args->target[-1] = 0x3F;
    *err = WarningFor(reason);
    ++tSubstitutions;
}

void U_CALLCONV FromUnicodeCallback(const void* context, UConverterFromUnicodeArgs* args,
                                    const UChar* units, int32_t length, UChar32 codePoint,
                                    UConverterCallbackReason reason, UErrorCode* err)
{
    UCNV_FROM_U_CALLBACK_SUBSTITUTE(context, args, units, length, codePoint, reason, err);
    if (U_FAILURE(*err) || !IsSubstitutedReason(reason))
        return;
    *err = WarningFor(reason);
    ++tSubstitutions;
}

UConverter* CloneConverter(const UConverter* cnv, UErrorCode* err)
{
#if U_ICU_VERSION_MAJOR_NUM >= 71
    return ucnv_clone(cnv, err);
#else
    return ucnv_safeClone(cnv, nullptr, nullptr, err);
#endif
}

bool IsKnownName(const char* name)
{
    UErrorCode err = U_ZERO_ERROR;
    const uint16_t count = ucnv_countAliases(name, &err);
    return U_SUCCESS(err) && count != 0;
}

// Well-known code pages and the names under which ICU is asked for them.
struct CodePageEntry {
    long codePage;
    const char* name;
};
const CodePageEntry kCodePages[] = {
    {932, "windows-31j"}, {936, "GBK"},          {949, "KS_C_5601-1987"}, {950, "Big5"},
    {1250, "cp1250"},     {1251, "cp1251"},      {1252, "cp1252"},        {1253, "cp1253"},
    {1254, "cp1254"},     {1255, "cp1255"},      {1256, "cp1256"},        {1257, "cp1257"},
    {1258, "cp1258"},     {28591, "ISO-8859-1"}, {65001, "UTF-8"},
};

} // namespace

unsigned SubstitutionCount()
{
    return tSubstitutions;
}

unsigned NoMemoryCount()
{
    return tNoMemory;
}

void NoteNoMemory()
{
    ++tNoMemory;
}

void ApplyConverterSettings(UConverter* cnv)
{
    UErrorCode err = U_ZERO_ERROR;
    ucnv_setToUCallBack(cnv, ToUnicodeCallback, nullptr, nullptr, nullptr, &err);
    err = U_ZERO_ERROR;
    ucnv_setFromUCallBack(cnv, FromUnicodeCallback, nullptr, nullptr, nullptr, &err);
    err = U_ZERO_ERROR;
    ucnv_setSubstChars(cnv, "?", 1, &err);
}

ConverterLease::ConverterLease(void* given) : m_cnv(static_cast<UConverter*>(given)), m_owned(false)
{
    if (m_cnv)
        return;
    UConverter* def = DefaultConverter();
    if (!def)
        return;
    UErrorCode err = U_ZERO_ERROR;
    m_cnv = CloneConverter(def, &err);
    NoteIfNoMemory(err);
    if (U_FAILURE(err)) {
        if (m_cnv)
            ucnv_close(m_cnv);
        m_cnv = nullptr;
        return;
    }
    m_owned = m_cnv != nullptr;
}

ConverterLease::~ConverterLease()
{
    if (m_owned)
        ucnv_close(m_cnv);
}

std::string CodePageName(long codePage)
{
    std::string candidate;
    for (const CodePageEntry& entry : kCodePages) {
        if (entry.codePage == codePage) {
            if (IsKnownName(entry.name))
                candidate = entry.name;
            break;
        }
    }
    if (candidate.empty()) {
        char name[32];
        std::snprintf(name, sizeof name, "windows-%03ld", codePage);
        if (!IsKnownName(name)) {
            std::snprintf(name, sizeof name, "cp%03ld", codePage);
            if (!IsKnownName(name))
                return std::string();
        }
        candidate = name;
    }
    UErrorCode err = U_ZERO_ERROR;
    const char* standard = ucnv_getStandardName(candidate.c_str(), "IANA", &err);
    if (U_SUCCESS(err) && standard && *standard)
        return standard;
    return candidate;
}

int ReadCodePageChar(UConverter* cnv, const char* text, int i, int limit, int32_t* codePoint)
{
    const char* p = text + i;
    UErrorCode err = U_ZERO_ERROR;
    const unsigned before = tSubstitutions;
    const UChar32 c = ucnv_getNextUChar(cnv, &p, text + limit, &err);
    const int used = static_cast<int>(p - (text + i));
    if (U_FAILURE(err) || err == kSubstUnassigned || err == kSubstIllegal ||
        tSubstitutions != before || used <= 0) {
        ucnv_resetToUnicode(cnv);
        return -1;
    }
    *codePoint = c;
    return used;
}

int WholeCharsLen(UConverter* cnv, const char* text, int length)
{
    if (!cnv || !text)
        return 0;
    const unsigned before = tSubstitutions;
    const int end = EffectiveLength(text, length);
    ucnv_resetToUnicode(cnv);
    int i = 0;
    int32_t c = 0;
    while (i < end) {
        const int used = ReadCodePageChar(cnv, text, i, end, &c);
        if (used < 0)
            break;
        i += used;
    }
    // The walk judges text already converted; what it met is not the caller's
    // conversion trouble.
    tSubstitutions = before;
    return i;
}

// One comparison unit of code page text: the lower-cased code point of the
// character at text[i], or the raw byte when there is none.
static int32_t NextCompareUnitC(UConverter* cnv, const char* text, int& i, int end, int& bad)
{
    int32_t c = 0;
    const int used = cnv ? ReadCodePageChar(cnv, text, i, end, &c) : -1;
    if (used < 0) {
        bad = 3;
        return static_cast<unsigned char>(text[i++]);
    }
    i += used;
    return u_tolower(c);
}

int CompareCodePage(UConverter* cnv, const char* a, int lengthA, const char* b, int lengthB,
                    int* badInput)
{
    if (cnv)
        ucnv_resetToUnicode(cnv);
    return CompareTexts(a, lengthA, b, lengthB, badInput,
                        [cnv](const char* text, int& i, int end, int& bad) {
                            return NextCompareUnitC(cnv, text, i, end, bad);
                        });
}

} // namespace Internal

using namespace Internal;

void* VORKMBConverterNew_C(const char* name)
try {
    UErrorCode err = U_ZERO_ERROR;
    UConverter* cnv = nullptr;
    if (!name) {
        if (UConverter* def = ExistingDefaultConverter()) {
            const char* defName = ucnv_getName(def, &err);
            if (U_SUCCESS(err))
                cnv = ucnv_open(defName, &err);
        } else {
            // The host's code page: that of the character locale the host
            // has set. ICU's own default is always UTF-8 here, whatever the
            // locale, and serves only while the host has set none.
            const std::string codeSet = Platform::CharacterCodeSet();
            cnv = ucnv_open(codeSet.empty() ? nullptr : codeSet.c_str(), &err);
        }
    } else {
        char* end = nullptr;
        const unsigned long number = std::strtoul(name, &end, 10);
        if (end != name && *end == '\0' && number >= 1 && number <= 99999) {
            const std::string icuName = CodePageName(static_cast<long>(number));
            if (icuName.empty())
                return nullptr;
            cnv = ucnv_open(icuName.c_str(), &err);
        } else {
            cnv = ucnv_open(name, &err);
            if ((U_FAILURE(err) || !cnv) &&
                VORKMBCompare_C(name, -1, "windows-28591", -1, nullptr) == 0) {
                // ICU does not know this Windows name of Latin-1.
                err = U_ZERO_ERROR;
                cnv = ucnv_open("ISO-8859-1", &err);
            }
        }
    }
    NoteIfNoMemory(err);
    if (U_FAILURE(err) || !cnv) {
        if (cnv)
            ucnv_close(cnv);
        return nullptr;
    }
    ApplyConverterSettings(cnv);
    return cnv;
} catch (...) {
    // Memory ran out for a name.
    NoteNoMemory();
    return nullptr;
}

void* VORKMBConverterNew_8(const char* name)
{
    if (!name)
        return VORKMBConverterNew_C(nullptr);
    char codePageName[60];
    {
        ConverterLease lease(nullptr);
        if (!lease.get())
            return nullptr;
        UErrorCode err = U_ZERO_ERROR;
        const unsigned before = SubstitutionCount();
        const int32_t length =
            ucnv_fromAlgorithmic(lease.get(), UCNV_UTF8, codePageName, 59, name, -1, &err);
        if (CodeOf(err, SubstitutionCount() != before) != kConverted || length > 59)
            return nullptr;
        codePageName[length] = '\0';
    }
    return VORKMBConverterNew_C(codePageName);
}

void* VORKMBConverterNew_A(const char* name)
{
    return qUTF8mode() ? VORKMBConverterNew_8(name) : VORKMBConverterNew_C(name);
}

int VORKMBCompare_C(const char* a, int lengthA, const char* b, int lengthB, int* badInput)
{
    ConverterLease lease(nullptr);
    return CompareCodePage(lease.get(), a, lengthA, b, lengthB, badInput);
}

} // namespace ZRMem
