#include "platform/InputFile.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>

#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

constexpr std::int64_t LargestPiece = std::int64_t{1} << 20U;

class WindowsInputFile final : public InputFile {
public:
    explicit WindowsInputFile(HANDLE file) : file_(file) {
        LARGE_INTEGER size{};
        if (GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size) != 0)
            size_ = size.QuadPart;
    }

    bool IsRegularFile() const { return size_ >= 0; }

    std::size_t Read(std::span<char> buffer) override {
        const std::int64_t room = std::min(static_cast<std::int64_t>(buffer.size()), LargestPiece);
        DWORD count = 0;
        if (ReadFile(file_.Get(), buffer.data(), static_cast<DWORD>(std::min(room, size_ - position_)),
                     &count, nullptr) == 0) {
            failed_ = true;
            return 0;
        }
        position_ += count;
        return count;
    }
    void Rewind() override {
        if (SetFilePointerEx(file_.Get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) != 0)
            position_ = 0;
    }
    bool Failed() const override { return failed_; }

private:
    const OwnedHandle file_;
    std::int64_t size_ = -1;
    std::int64_t position_ = 0;
    bool failed_ = false;
};

}  // namespace

std::unique_ptr<InputFile> OpenInputFile(const std::filesystem::path& path, SystemError& error) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        if (auto input = std::make_unique<WindowsInputFile>(file); input->IsRegularFile())
            return input;
        SetLastError(ERROR_NOT_SUPPORTED);
    }
    error = LastSystemError();
    return nullptr;
}

}  // namespace tallyhorn
