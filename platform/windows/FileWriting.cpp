#include "platform/windows/FileWriting.h"

#include <windows.h>

#include <algorithm>

namespace tallyhorn {

bool WriteAll(void* file, std::string_view bytes) {
    constexpr std::size_t LargestPiece = std::size_t{1} << 20U;
    while (!bytes.empty()) {
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), LargestPiece));
        if (WriteFile(file, bytes.data(), wanted, &count, nullptr) == 0)
            return false;
        // A write of 0 bytes does not set an error.
        if (count == 0) {
            SetLastError(ERROR_WRITE_FAULT);
            return false;
        }
        bytes.remove_prefix(count);
    }
    return true;
}

}  // namespace tallyhorn
