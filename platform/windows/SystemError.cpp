#include "platform/SystemError.h"

#include <windows.h>

#include <array>

namespace tallyhorn {

SystemError LastSystemError() {
    const DWORD number = GetLastError();
    std::array<char, 512> text;
    // FORMAT_MESSAGE_MAX_WIDTH_MASK replaces line ends by blanks.
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        number, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    SystemError error{static_cast<std::int32_t>(number), std::string(text.data(), length)};
    error.Text.erase(error.Text.find_last_not_of(' ') + 1);
    if (error.Text.empty())
        error.Text = "Unknown error";
    return error;
}

}  // namespace tallyhorn
