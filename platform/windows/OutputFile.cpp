#include "platform/OutputFile.h"

#include <windows.h>

#include "platform/windows/FileWriting.h"
#include "platform/windows/OwnedHandle.h"
#include "platform/windows/WindowsReplacementFile.h"

namespace tallyhorn {
namespace {

class WindowsOutputFile final : public OutputFile {
public:
    explicit WindowsOutputFile(HANDLE file) : file_(file) {}

    std::optional<SystemError> Write(std::string_view bytes) override {
        if (WriteAll(file_.Get(), bytes))
            return std::nullopt;
        return LastSystemError();
    }

    std::optional<SystemError> Finish() override {
        std::optional<SystemError> error;
        if (FlushFileBuffers(file_.Get()) == 0)
            error = LastSystemError();
        file_.Close();
        return error;
    }

private:
    OwnedHandle file_;
};

}  // namespace

std::unique_ptr<OutputFile> CreateReplacementFile(const std::filesystem::path& path, SystemError& error,
                                                  OldFile old) {
    auto replacement = std::make_unique<WindowsReplacementFile>();
    const std::optional<SystemError> failure = replacement->Begin(path, old);
    if (!failure)
        return replacement;
    error = *failure;
    if (error.Number != ERROR_ACCESS_DENIED)
        return nullptr;
    // A file can be writable although its folder does not allow new files.
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, TRUNCATE_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    return std::make_unique<WindowsOutputFile>(file);
}

}  // namespace tallyhorn
