#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/SystemError.h"

namespace tallyhorn {

/// Owns one open file that is written from its start.  For one thread at a time.
class OutputFile {
public:
    virtual ~OutputFile() = default;
    /// Writes all the bytes with system calls.  For many small writes use a BufferedWriter.
    virtual std::optional<SystemError> Write(std::string_view bytes) = 0;
    /// Closes the file after its content and its name have reached the disk.
    virtual std::optional<SystemError> Finish() = 0;
};

/// Creates a new file.  It stays, with what was written, even if a later call fails.  Returns null and sets
/// `error` if that fails, in particular if `path` exists.
std::unique_ptr<OutputFile> CreateOutputFile(const std::filesystem::path& path, SystemError& error);

/// Creates a temporary file.  When Finish succeeds, it replaces the file at `path` in one step, or becomes
/// that file if there was none; otherwise `path` stays unchanged.  Symbolic links are followed, and the
/// permissions of the old file are kept.  If the folder does not allow new files, an existing writable file
/// is overwritten instead and is lost if that fails.  Returns null and sets `error` if the file is not
/// writable or not a regular file.
std::unique_ptr<OutputFile> CreateReplacementFile(const std::filesystem::path& path, SystemError& error);

/// Removes a file.  A missing file is an error, and so is a folder.
std::optional<SystemError> RemoveFile(const std::filesystem::path& path);

}  // namespace tallyhorn
