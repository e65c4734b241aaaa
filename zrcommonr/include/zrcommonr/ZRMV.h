// The missing-value constant of the product.
#ifndef ZRCOMMONR_ZRMV_H
#define ZRCOMMONR_ZRMV_H

#include <zrcommonr/ZRCommonExport.h>

namespace ZRMV {

// The number that stands for "missing" in every numeric list of the product.
// It is the finite double next to the lowest one (-1.7976931348623155e308):
// unlike NaN it compares equal to itself, so that lists of numbers holding
// it can be compared and searched, and it differs from the lowest finite
// double -1.7976931348623157e308, which the readers use as an open bound.
ZRCOMMON_API extern const double gMissingValue;

// True when the value is the missing value.
ZRCOMMON_API bool IsMissing(double value);

} // namespace ZRMV

#endif
