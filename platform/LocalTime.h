#pragma once

#include <ctime>

namespace tallyhorn {

/// The parts of a moment where the machine stands.  Safe in any thread; all parts are 0 where the system
/// knows none for it.
std::tm LocalTime(std::time_t moment);

}  // namespace tallyhorn
