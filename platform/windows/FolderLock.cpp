#include "platform/FolderLock.h"

#include <windows.h>

#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {

struct FolderLock::Held {
    explicit Held(HANDLE file) : File(file) {}
    const OwnedHandle File;
};

FolderLock::FolderLock(const std::filesystem::path& folder) : file_(folder / FileName) {}

FolderLock::~FolderLock() = default;

bool FolderLock::Acquire() {
    if (held_ != nullptr)
        return true;
    const HANDLE file = CreateFileW(file_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() != ERROR_SHARING_VIOLATION;
    held_ = std::make_unique<Held>(file);
    return true;
}

}  // namespace tallyhorn
