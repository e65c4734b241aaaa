#include <zrparsexmlr/ExtNameStr.h>

#include "ZREncodingInternal.h"

#include <unicode/ucnv.h>

#include <new>
#include <utility>

namespace ZRMem {

using Internal::NoMemoryCount;

struct ExtNameStr::Record {
    std::string u8;
    std::string cp;
    int converterId = -1;
    int errorCode = 0;
    U16String u16;
    std::string system;
};

namespace {

// A converter for the system encoding, or null (then the default converter
// serves); closed at the end of the scope.
class SystemConverter {
public:
    SystemConverter() : m_cnv(VORKMBConverterNew_A(SystemEncoding())) {}
    ~SystemConverter()
    {
        if (m_cnv)
            ucnv_close(static_cast<UConverter*>(m_cnv));
    }
    SystemConverter(const SystemConverter&) = delete;
    SystemConverter& operator=(const SystemConverter&) = delete;
    void* get() const { return m_cnv; }

private:
    void* m_cnv;
};

// The code page and system forms of `u8`: the code of the code page form,
// or if that is 0 of the system form; 2 when memory ran out for either.
// Throws nothing.
int CodePageForms(const std::string& u8, std::string& cp, std::string& system)
{
    const unsigned failures = NoMemoryCount();
    const int cpCode = VORKMBU8ToCodePage(nullptr, cp, u8);
    int systemCode = kNoScratch;
    {
        SystemConverter converter;
        // A converter that could not be had for lack of memory must not be
        // taken for an unknown system encoding, which the default serves.
        if (converter.get() != nullptr || NoMemoryCount() == failures)
            systemCode = VORKMBU8ToCodePage(converter.get(), system, u8);
    }
    if (NoMemoryCount() != failures)
        return kNoScratch;
    return cpCode != 0 ? cpCode : systemCode;
}

} // namespace

ExtNameStr::ExtNameStr() : m_rec(new (std::nothrow) Record) {}

ExtNameStr::ExtNameStr(const ExtNameStr& other) : m_rec(nullptr)
{
    try {
        m_rec = new Record(other.Rec());
    } catch (...) {
        m_rec = nullptr;
    }
}

ExtNameStr& ExtNameStr::operator=(const ExtNameStr& other)
{
    if (this == &other)
        return *this;
    try {
        Record copy(other.Rec());
        if (m_rec == nullptr)
            m_rec = new Record();
        std::swap(*m_rec, copy);
    } catch (...) {
        if (m_rec != nullptr)
            m_rec->errorCode = kNoScratch;
    }
    return *this;
}

ExtNameStr::~ExtNameStr()
{
    delete m_rec;
}

const ExtNameStr::Record& ExtNameStr::Rec() const
{
    static const Record empty;
    return m_rec != nullptr ? *m_rec : empty;
}

void ExtNameStr::Install(std::string& u8, int code)
{
    if (m_rec == nullptr)
        m_rec = new (std::nothrow) Record;
    if (m_rec == nullptr)
        return;
    if (code == kNoScratch) {
        m_rec->errorCode = kNoScratch;
        return;
    }
    std::string cp;
    std::string system;
    U16String u16;
    const int id = VORKMBDefaultConverterID();
    const int formsCode = CodePageForms(u8, cp, system);
    const int u16Code = VORKMBU8ToU16(u16, u8);
    if (formsCode == kNoScratch || u16Code == kNoScratch) {
        m_rec->errorCode = kNoScratch;
        return;
    }
    m_rec->u8.swap(u8);
    m_rec->cp.swap(cp);
    m_rec->system.swap(system);
    m_rec->u16.swap(u16);
    m_rec->converterId = id;
    m_rec->errorCode = u16Code;
}

void ExtNameStr::Refresh() const
{
    if (m_rec == nullptr)
        return;
    std::string cp;
    std::string system;
    const int id = VORKMBDefaultConverterID();
    const int code = CodePageForms(m_rec->u8, cp, system);
    m_rec->errorCode = code;
    if (code == kNoScratch)
        return;
    m_rec->cp.swap(cp);
    m_rec->system.swap(system);
    m_rec->converterId = id;
}

void ExtNameStr::RefreshIfStale() const
{
    if (m_rec != nullptr && m_rec->converterId != VORKMBDefaultConverterID())
        Refresh();
}

void ExtNameStr::SetU8(const std::string& text)
{
    std::string u8;
    int code = kConverted;
    try {
        u8 = text;
    } catch (...) {
        code = kNoScratch;
    }
    Install(u8, code);
}

void ExtNameStr::SetCP(const std::string& text, void* converter)
{
    std::string u8;
    const int code = VORKMBCodePageToU8(converter, u8, text);
    Install(u8, code);
}

void ExtNameStr::SetGeneric(const std::string& text)
{
    std::string u8;
    const int code = VORKMBGenericToU8(nullptr, u8, text);
    Install(u8, code);
}

void ExtNameStr::SetU16(const U16String& text)
{
    std::string u8;
    const int code = VORKMBU16ToU8(u8, text);
    Install(u8, code);
}

void ExtNameStr::SetSystem(const std::string& text)
{
    if (m_rec == nullptr)
        m_rec = new (std::nothrow) Record;
    if (m_rec == nullptr)
        return;
    const unsigned failures = NoMemoryCount();
    std::string system;
    std::string u8;
    std::string cp;
    int code = kNoScratch;
    const int id = VORKMBDefaultConverterID();
    try {
        system = text;
        {
            SystemConverter converter;
            if (converter.get() != nullptr || NoMemoryCount() == failures)
                VORKMBCodePageToU8(converter.get(), u8, system);
        }
        code = VORKMBU8ToCodePage(nullptr, cp, u8);
    } catch (...) {
        Internal::NoteNoMemory();
    }
    if (NoMemoryCount() != failures) {
        m_rec->errorCode = kNoScratch;
        return;
    }
    m_rec->system.swap(system);
    m_rec->u8.swap(u8);
    m_rec->cp.swap(cp);
    m_rec->converterId = id;
    m_rec->errorCode = code;
}

void ExtNameStr::Clear()
{
    std::string u8;
    Install(u8, kConverted);
}

const std::string& ExtNameStr::GetU8() const
{
    return Rec().u8;
}

const char* ExtNameStr::GetU8Z() const
{
    return Rec().u8.c_str();
}

const std::string& ExtNameStr::GetCP() const
{
    RefreshIfStale();
    return Rec().cp;
}

const char* ExtNameStr::GetCPZ() const
{
    return GetCP().c_str();
}

std::string ExtNameStr::GetCP(void* converter) const
{
    std::string text;
    const int code = VORKMBU8ToCodePage(converter, text, Rec().u8);
    if (m_rec != nullptr)
        m_rec->errorCode = code;
    return text;
}

const std::string& ExtNameStr::GetGeneric() const
{
    return qUTF8mode() ? Rec().u8 : GetCP();
}

const char* ExtNameStr::GetGenericZ() const
{
    return GetGeneric().c_str();
}

const U16String& ExtNameStr::GetU16() const
{
    return Rec().u16;
}

const unsigned short* ExtNameStr::GetU16Z() const
{
    return Rec().u16.c_str();
}

const std::string& ExtNameStr::GetSystem() const
{
    return Rec().system;
}

const char* ExtNameStr::GetSystemZ() const
{
    return Rec().system.c_str();
}

bool ExtNameStr::Empty() const
{
    return Rec().u8.empty();
}

int ExtNameStr::ErrorCode() const
{
    return m_rec != nullptr ? m_rec->errorCode : kNoScratch;
}

} // namespace ZRMem
