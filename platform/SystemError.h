#pragma once

#include <cstdint>
#include <string>

namespace tallyhorn {

/// An error of the operating system.
struct SystemError {
    std::int32_t Number = 0;
    /// One line in Windows-1252, without a line end.
    std::string Text;
};

/// Returns the error of the last failed system call of this thread.  Call it before any other system call.
SystemError LastSystemError();

}  // namespace tallyhorn
