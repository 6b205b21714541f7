#pragma once

#include <cstdint>

#include "filters/SuppressionFilter.h"

namespace tallyhorn {

// The whole seconds since 1970-01-01 of a filter's date range, for the matching and for the eye.  Pure
// functions, safe in any thread.

/// The first and last second inside the range, the limits of the type where nothing ends it: no range is in
/// force, or its end is not a number, which is neither before nor after any date.
std::int64_t FirstSecond(const SuppressionFilter& filter);
std::int64_t LastSecond(const SuppressionFilter& filter);

}  // namespace tallyhorn
