#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/OutputFile.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {

/// Owns a temporary file.  Finish makes it replace another file if no call has failed; otherwise the
/// destructor removes it.  For one thread at a time.
class WindowsReplacementFile final : public OutputFile {
public:
    WindowsReplacementFile() = default;
    ~WindowsReplacementFile() override;
    WindowsReplacementFile(const WindowsReplacementFile&) = delete;
    WindowsReplacementFile& operator=(const WindowsReplacementFile&) = delete;

    /// Creates the temporary file in the folder of the file that `path` names or links to.  That file must be
    /// a writable regular file; `old` decides whether it must exist.
    std::optional<SystemError> Begin(const std::filesystem::path& path, OldFile old);
    std::optional<SystemError> Write(std::string_view bytes) override;
    /// Waits until all bytes are on the disk, and replaces the old file, whose permissions the new file gets.
    std::optional<SystemError> Finish() override;

private:
    std::optional<SystemError> FindTarget(const std::filesystem::path& path, OldFile old);
    std::optional<SystemError> CreateTemporary();
    std::optional<SystemError> TakePlace();

    std::unique_ptr<OwnedHandle> file_;
    std::wstring target_;
    std::wstring temporary_;  ///< empty if there is none
    bool exists_ = false;     ///< whether there is a file to replace
    std::optional<SystemError> failure_;
};

}  // namespace tallyhorn
