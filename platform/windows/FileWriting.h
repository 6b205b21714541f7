#pragma once

#include <string_view>

namespace tallyhorn {

/// Writes all the bytes to `file`, a HANDLE.  Returns false on failure; LastSystemError then returns the
/// reason.
bool WriteAll(void* file, std::string_view bytes);

}  // namespace tallyhorn
