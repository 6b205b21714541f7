#pragma once

#include <cstdint>

namespace tallyhorn {

/// A message's index in its channel's store.
using Slot = std::int32_t;

}  // namespace tallyhorn
