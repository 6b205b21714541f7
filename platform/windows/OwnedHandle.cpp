#include "platform/windows/OwnedHandle.h"

#include <windows.h>

namespace tallyhorn {

void OwnedHandle::Close() {
    if (*this)
        CloseHandle(handle_);
    handle_ = nullptr;
}

OwnedHandle::operator bool() const {
    return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE;
}

std::int32_t OwnedHandle::Number() const {
    return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(handle_));
}

}  // namespace tallyhorn
