// Helpers shared by the sources of ZRPMMLParser; not exported.
#ifndef ZRPARSEXMLR_ZRPMMLINTERNAL_H
#define ZRPARSEXMLR_ZRPMMLINTERNAL_H

#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRStatusCodes.h>

namespace ZRXPrsUtil {

// A failure status with the given code and the flag false.
ZRCommon::ZRStatus PMMLFailure(ZRCommon::StatusCode code);

} // namespace ZRXPrsUtil

#endif
