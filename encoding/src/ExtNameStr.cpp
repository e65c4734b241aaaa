#include <zrparsexmlr/ExtNameStr.h>

#include <unicode/ucnv.h>

namespace ZRMem {

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

} // namespace

ExtNameStr::ExtNameStr() : m_rec(new Record) {}

ExtNameStr::ExtNameStr(const ExtNameStr& other) : m_rec(new Record(*other.m_rec)) {}

ExtNameStr& ExtNameStr::operator=(const ExtNameStr& other)
{
    if (this != &other)
        *m_rec = *other.m_rec;
    return *this;
}

ExtNameStr::~ExtNameStr()
{
    delete m_rec;
}

void ExtNameStr::Refresh() const
{
    Record& r = *m_rec;
    r.converterId = VORKMBDefaultConverterID();
    const int cpCode = VORKMBU8ToCodePage(nullptr, r.cp, r.u8);
    SystemConverter system;
    const int systemCode = VORKMBU8ToCodePage(system.get(), r.system, r.u8);
    r.errorCode = cpCode != 0 ? cpCode : systemCode;
}

void ExtNameStr::RefreshIfStale() const
{
    if (m_rec->converterId != VORKMBDefaultConverterID())
        Refresh();
}

void ExtNameStr::AfterMasterChanged()
{
    Refresh();
    m_rec->errorCode = VORKMBU8ToU16(m_rec->u16, m_rec->u8);
}

void ExtNameStr::SetU8(const std::string& text)
{
    m_rec->u8 = text;
    m_rec->errorCode = 0;
    AfterMasterChanged();
}

void ExtNameStr::SetCP(const std::string& text, void* converter)
{
    m_rec->errorCode = VORKMBCodePageToU8(converter, m_rec->u8, text);
    AfterMasterChanged();
}

void ExtNameStr::SetGeneric(const std::string& text)
{
    m_rec->errorCode = VORKMBGenericToU8(nullptr, m_rec->u8, text);
    AfterMasterChanged();
}

void ExtNameStr::SetU16(const U16String& text)
{
    m_rec->errorCode = VORKMBU16ToU8(m_rec->u8, text);
    AfterMasterChanged();
}

void ExtNameStr::SetSystem(const std::string& text)
{
    Refresh();
    Record& r = *m_rec;
    r.system = text;
    {
        SystemConverter system;
        VORKMBCodePageToU8(system.get(), r.u8, r.system);
    }
    r.errorCode = VORKMBU8ToCodePage(nullptr, r.cp, r.u8);
}

void ExtNameStr::Clear()
{
    m_rec->u8.clear();
    m_rec->errorCode = 0;
    AfterMasterChanged();
}

const std::string& ExtNameStr::GetU8() const
{
    return m_rec->u8;
}

const char* ExtNameStr::GetU8Z() const
{
    return m_rec->u8.c_str();
}

const std::string& ExtNameStr::GetCP() const
{
    RefreshIfStale();
    return m_rec->cp;
}

const char* ExtNameStr::GetCPZ() const
{
    return GetCP().c_str();
}

std::string ExtNameStr::GetCP(void* converter) const
{
    std::string text;
    m_rec->errorCode = VORKMBU8ToCodePage(converter, text, m_rec->u8);
    return text;
}

const std::string& ExtNameStr::GetGeneric() const
{
    return qUTF8mode() ? m_rec->u8 : GetCP();
}

const char* ExtNameStr::GetGenericZ() const
{
    return GetGeneric().c_str();
}

const U16String& ExtNameStr::GetU16() const
{
    return m_rec->u16;
}

const unsigned short* ExtNameStr::GetU16Z() const
{
    return m_rec->u16.c_str();
}

const std::string& ExtNameStr::GetSystem() const
{
    return m_rec->system;
}

const char* ExtNameStr::GetSystemZ() const
{
    return m_rec->system.c_str();
}

bool ExtNameStr::Empty() const
{
    return m_rec->u8.empty();
}

int ExtNameStr::ErrorCode() const
{
    return m_rec->errorCode;
}

} // namespace ZRMem
