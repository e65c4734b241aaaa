// Helpers shared by the sources of ZRPMMLParser; not exported.
#ifndef ZRPARSEXMLR_ZRPMMLINTERNAL_H
#define ZRPARSEXMLR_ZRPMMLINTERNAL_H

#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRStatusCodes.h>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace ZRXPrsUtil {

// A failure status with the given code and the flag false.
ZRCommon::ZRStatus PMMLFailure(ZRCommon::StatusCode code);

class FieldStore;
// The records of the DataField elements that the last parse kept out of the
// DOM, or null when it built them (SetFieldsInDOM).
const FieldStore* RecordedFields(const xercesc::XercesDOMParser* parser);
// Frees those records, after a parse whose document is not used.
void ForgetRecordedFields(xercesc::XercesDOMParser* parser);

} // namespace ZRXPrsUtil

#endif
