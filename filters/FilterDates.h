#pragma once

#include <cstdint>

#include "filters/SuppressionFilter.h"

namespace tallyhorn {

// Each returns the first or last whole second, counted from 1970-01-01, inside a filter's date range; and the
// limit of the type if the range has no such end: UseDateRange is false, or the date is not a number (NaN),
// which compares as neither before nor after any date.

std::int64_t FirstSecond(const SuppressionFilter& filter);
std::int64_t LastSecond(const SuppressionFilter& filter);

}  // namespace tallyhorn
