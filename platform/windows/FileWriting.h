#pragma once

#include <string_view>

namespace tallyhorn {

/// Hands all the bytes to the system; false where it fails, for a reason that LastSystemError tells.
/// `file` is a HANDLE.  Safe in any thread.
bool WriteAll(void* file, std::string_view bytes);

}  // namespace tallyhorn
