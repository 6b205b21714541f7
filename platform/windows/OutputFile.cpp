#include "platform/OutputFile.h"

#include <windows.h>

#include <algorithm>

#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

constexpr std::size_t LargestPiece = std::size_t{1} << 20U;

class WindowsOutputFile final : public OutputFile {
public:
    explicit WindowsOutputFile(HANDLE file) : file_(std::make_unique<OwnedHandle>(file)) {}

    std::optional<SystemError> Write(std::string_view bytes) override {
        while (!bytes.empty()) {
            DWORD count = 0;
            const auto wanted = static_cast<DWORD>(std::min(bytes.size(), LargestPiece));
            if (WriteFile(file_->Get(), bytes.data(), wanted, &count, nullptr) == 0 || count == 0)
                return LastSystemError();
            bytes.remove_prefix(count);
        }
        return std::nullopt;
    }

    std::optional<SystemError> Finish() override {
        if (FlushFileBuffers(file_->Get()) == 0)
            return LastSystemError();
        file_.reset();
        return std::nullopt;
    }

private:
    std::unique_ptr<OwnedHandle> file_;
};

}  // namespace

std::unique_ptr<OutputFile> CreateOutputFile(const std::filesystem::path& path, SystemError& error) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        error = LastSystemError();
        return nullptr;
    }
    return std::make_unique<WindowsOutputFile>(file);
}

std::optional<SystemError> RemoveFile(const std::filesystem::path& path) {
    if (DeleteFileW(path.c_str()) != 0)
        return std::nullopt;
    return LastSystemError();
}

}  // namespace tallyhorn
