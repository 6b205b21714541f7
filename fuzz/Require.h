#pragma once

#include <cstdlib>

namespace tallyhorn {

/// Aborts the fuzzer, which then reports its input, unless the condition holds.  Unlike assert, it is active
/// in every build.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

}  // namespace tallyhorn
