#pragma once

#include <cstdint>

#include "filters/SuppressionFilter.h"

namespace tallyhorn {

// The functions return the first and the last whole second, counted from 1970-01-01, inside a filter's date
// range, or the lowest or highest value of the type if the range is open at that end.  It is open if
// UseDateRange is false, or if the date is a NaN, because no date compares as before or after a NaN.

std::int64_t FirstSecond(const SuppressionFilter& filter);
std::int64_t LastSecond(const SuppressionFilter& filter);

}  // namespace tallyhorn
