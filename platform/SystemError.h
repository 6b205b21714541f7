#pragma once

#include <cstdint>
#include <string>

namespace tallyhorn {

/// A failure as the operating system tells it.  A plain value.
struct SystemError {
    std::int32_t Number = 0;
    /// One line in ANSI, without a line break at its end.
    std::string Text;
};

/// Why the system's last call in this thread failed; asked before any other call.
SystemError LastSystemError();

}  // namespace tallyhorn
