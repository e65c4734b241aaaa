// Pieces shared by the sources of ZRSettingsParser and not exported: the
// common opening of the queries and the search of a named child in a scope.
#ifndef ZRPARSEXMLR_ZRSETTINGSINTERNAL_H
#define ZRPARSEXMLR_ZRSETTINGSINTERNAL_H

#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRStatusCodes.h>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace ZRXPrsUtil {
namespace Settings {

// A failure status with `code`.
inline ZRCommon::ZRStatus Fail(ZRCommon::StatusCode code)
{
    // Only the two soft outcomes carry the flag.
    return ZRCommon::ZRStatus(code,
                              code == ZRCommon::eNoSuchParameter || code == ZRCommon::eNoValue);
}

// The held status if it is not OK; else eNoDocument without a document,
// eNoParameters without a Parameters element; else OK.
ZRCommon::ZRStatus Opening(const ZRCommon::ZRStatus& status, const xercesc::DOMDocument* document,
                           const xercesc::DOMElement* parameters);

// The scope of a query: the group that `context` stands for, or the
// Parameters element when it is null.
const xercesc::DOMElement* Scope(void* context, const xercesc::DOMElement* parameters);

// The first child of `scope` with tag `tag` whose "name" attribute equals
// `name` code unit by code unit; children without "name" are passed over.
// Null when there is none, and for a null name or one that is not UTF-8.
const xercesc::DOMElement* FindNamedChild(const xercesc::DOMElement* scope, const char* tag,
                                          const char* name);

} // namespace Settings
} // namespace ZRXPrsUtil

#endif
