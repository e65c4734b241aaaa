// ZRStatus: the result of every operation of the product that can fail.
#ifndef ZRCOMMONR_ZRSTATUS_H
#define ZRCOMMONR_ZRSTATUS_H

#include <zrcommonr/ZRCommonExport.h>
#include <zrcommonr/ZRStatusCodes.h>

namespace ZRCommon {

// A value of a code and a flag. A default-constructed status is OK (code 0);
// any status built with a code is a failure, whatever the code: also
// ZRStatus(0, flag), whose GetCode() is 0 and which equals no OK status. The flag is
// carried to the caller untouched; the parsers set it only on the "soft"
// outcomes eNoSuchParameter (120) and eNoValue (123). The codes are named in
// ZRStatusCodes.h.
class ZRCOMMON_API ZRStatus {
public:
    ZRStatus();
    ZRStatus(long code, bool flag);

    bool IsOK() const;
    long GetCode() const; // 0 when OK
    bool GetFlag() const;

    bool operator==(const ZRStatus& other) const;
    bool operator!=(const ZRStatus& other) const;

private:
    long m_code;
    bool m_flag;
    bool m_given; // built with a code
};

} // namespace ZRCommon

#endif
