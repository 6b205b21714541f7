#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/OutputFile.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {

/// Owns a new file that takes another one's place once it is finished without a failure, and removes it
/// otherwise.  Called from one thread at a time.
class WindowsReplacementFile final : public OutputFile {
public:
    WindowsReplacementFile() = default;
    ~WindowsReplacementFile() override;
    WindowsReplacementFile(const WindowsReplacementFile&) = delete;
    WindowsReplacementFile& operator=(const WindowsReplacementFile&) = delete;

    /// Makes the new file beside the one that `path` names or links to.  What stands there has to be a
    /// regular file that may be written, or nothing.
    std::optional<SystemError> Begin(const std::filesystem::path& path);
    std::optional<SystemError> Write(std::string_view bytes) override;
    /// The new file is on the disk and in its place, with the permissions of the old one.
    std::optional<SystemError> Finish() override;

private:
    std::optional<SystemError> FindTarget(const std::filesystem::path& path);
    std::optional<SystemError> CreateTemporary();
    std::optional<SystemError> TakePlace();

    std::unique_ptr<OwnedHandle> file_;
    std::wstring target_;
    std::wstring temporary_;  ///< empty where there is none
    bool exists_ = false;     ///< the file to replace
    std::optional<SystemError> failure_;
};

}  // namespace tallyhorn
