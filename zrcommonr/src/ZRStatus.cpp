#include <zrcommonr/ZRStatus.h>

namespace ZRCommon {

ZRStatus::ZRStatus() : m_code(0), m_flag(false) {}

ZRStatus::ZRStatus(long code, bool flag) : m_code(code), m_flag(flag) {}

bool ZRStatus::IsOK() const { return m_code == 0; }

long ZRStatus::GetCode() const { return m_code; }

bool ZRStatus::GetFlag() const { return m_flag; }

bool ZRStatus::operator==(const ZRStatus& other) const
{
    return m_code == other.m_code && m_flag == other.m_flag;
}

bool ZRStatus::operator!=(const ZRStatus& other) const { return !(*this == other); }

} // namespace ZRCommon
