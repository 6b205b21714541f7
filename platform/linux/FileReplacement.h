#pragma once

#include <filesystem>
#include <string_view>

#include "platform/OutputFile.h"
#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

/// Owns a temporary file that replaces another file in one step.  The destructor removes the temporary file
/// if it did not replace the other one.  A function that fails returns false and sets errno.  For one thread
/// at a time.
class FileReplacement {
public:
    FileReplacement() = default;
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Creates the temporary file in the folder of the file that `path` names or links to, with the owner and
    /// the permissions of that file.  That file must be a regular file; `old` decides whether it must be
    /// writable or must exist.
    bool Begin(const std::filesystem::path& path, OldFile old = OldFile::Optional);
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
