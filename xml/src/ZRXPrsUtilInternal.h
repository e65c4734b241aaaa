// Helpers shared by the readers inside the library and not exported: the
// number rules, the vendor Extension test, and the one place where the
// library makes and runs its DOM parsers.
#ifndef ZRPARSEXMLR_ZRXPRSUTILINTERNAL_H
#define ZRPARSEXMLR_ZRXPRSUTILINTERNAL_H

#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRStatus.h>

#include <string>
#include <vector>

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace ZRXPrsUtil {

// An integer in the range of int. Anything else (not an integer, out of
// range, empty) gives false and leaves `value` untouched.
bool ParseInteger(const XMLCh* text, int& value);
// An XML Schema double. NaN gives ZRMV::gMissingValue; INF, -INF and text that
// is not a number give false and leave `value` untouched.
bool ParseDouble(const XMLCh* text, double& value);
// White-space separated doubles. The first token that fails empties `values`
// and gives false; no token gives true and an empty list.
bool ParseDoublesList(const XMLCh* text, std::vector<double>& values);
// "extender" equals VendorExtenderId and, if `name` is not null, "name"
// equals `name`. The tag is not looked at.
bool IsVendorExtension(const xercesc::DOMElement& element, const char* name);

// Makes every DOM parser of the library. Documents come from users, so the
// parser resolves no external entity, loads no external DTD and stops entity
// expansion at the XML library's default limit; nothing else is changed (no
// validation, no namespaces, no error handler). Null if it can't be made.
// May throw what the XML library throws while constructing a parser.
xercesc::XercesDOMParser* NewDOMParser();

// Parses `source` (or the file at `path` when `source` is null) with
// `parser`. Any failure gives status 104 and no exception leaves: an
// XMLException (its message goes to `message` as UTF-8), any other exception,
// a document that is not well-formed (the parser's error count is not 0), or
// no document. On success the document stays with the parser.
ZRCommon::ZRStatus ParseWithParser(xercesc::XercesDOMParser& parser,
                                   const xercesc::InputSource* source, const char* path,
                                   std::string& message);

} // namespace ZRXPrsUtil

#endif
