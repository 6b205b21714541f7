#pragma once

#include <filesystem>
#include <string_view>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

/// Owns a temporary file that replaces another file in one step, and removes it if that did not happen.  Each
/// function returns false with the error in errno if it fails.  For one thread at a time.
class FileReplacement {
public:
    FileReplacement() = default;
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Creates the temporary file in the folder of the file that `path` names or links to, with its owner and
    /// permissions.  That file must be a writable regular file, or not exist.
    bool Begin(const std::filesystem::path& path);
    bool Write(std::string_view bytes);
    /// Replaces the old file.  After a power failure the path has either the old file or the complete new
    /// one.
    bool Commit();

private:
    FileDescriptor file_;
    std::filesystem::path target_;
    std::filesystem::path temporary_;  ///< empty if there is none
};

}  // namespace tallyhorn
