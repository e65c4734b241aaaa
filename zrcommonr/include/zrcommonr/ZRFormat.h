// Number formatting for XML text.
#ifndef ZRCOMMONR_ZRFORMAT_H
#define ZRCOMMONR_ZRFORMAT_H

#include <zrcommonr/ZRCommonExport.h>
#include <zrcommonr/ZRNamespaces.h>

#include <string>

namespace ZRXML_NAMESPACE {

// Gives the shortest decimal text that reads back to exactly the same double,
// without a trailing ".0" for whole numbers: 12 gives "12", 0.1 gives "0.1",
// 1e21 gives "1e+21". NaN gives "NaN" and the infinities "INF" and "-INF",
// the XML Schema forms. The decimal separator is the point whatever locale
// the host process has set.
//
// `fixed` asks for plain positional notation instead of the shortest form and
// `buffer`, when not null, receives a copy of the text (it must hold at least
// 32 bytes). The library's own callers always pass false and null.
ZRCOMMON_API std::string Format(double value, bool fixed, char* buffer);

} // namespace ZRXML_NAMESPACE

#endif
