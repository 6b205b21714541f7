#pragma once

#include <cstdlib>

namespace tallyhorn {

/// Ends the fuzzer with a report of its input unless the condition holds; any build keeps it, unlike an
/// assert.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

}  // namespace tallyhorn
