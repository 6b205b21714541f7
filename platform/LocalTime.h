#pragma once

#include <ctime>

namespace tallyhorn {

/// Splits a moment into calendar fields of local time.  Safe in any thread.  If the system cannot convert the
/// moment, all fields are 0.
std::tm LocalTime(std::time_t moment);

}  // namespace tallyhorn
