#include <zrcommonr/ZRStatus.h>

namespace ZRCommon {

ZRStatus::ZRStatus() : m_code(0), m_flag(false), m_given(false) {}

ZRStatus::ZRStatus(long code, bool flag) : m_code(code), m_flag(flag), m_given(true) {}

bool ZRStatus::IsOK() const
{
    return !m_given;
}

long ZRStatus::GetCode() const
{
    return m_code;
}

bool ZRStatus::GetFlag() const
{
    return m_flag;
}

bool ZRStatus::operator==(const ZRStatus& other) const
{
    return m_code == other.m_code && m_flag == other.m_flag && m_given == other.m_given;
}

bool ZRStatus::operator!=(const ZRStatus& other) const
{
    return !(*this == other);
}

} // namespace ZRCommon
