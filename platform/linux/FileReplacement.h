#pragma once

#include <filesystem>
#include <string_view>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

/// Owns a new file that takes another one's place in one step, and removes it unless it came to that.  Called
/// from one thread at a time; each function tells a failure by false and its reason in errno.
class FileReplacement {
public:
    FileReplacement() = default;
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Makes the new file beside the one that `path` names or links to, with its owner and permissions.  What
    /// stands there has to be a regular file that may be written, or nothing.
    bool Begin(const std::filesystem::path& path);
    bool Write(std::string_view bytes);
    /// The new file is on the disk and in its place, also after a power failure.
    bool Commit();

private:
    FileDescriptor file_;
    std::filesystem::path target_;
    std::filesystem::path temporary_;  ///< empty where there is none
};

}  // namespace tallyhorn
