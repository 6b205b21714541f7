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
    /// Writes all bytes without a buffer.  For many small writes use a BufferedWriter.
    virtual std::optional<SystemError> Write(std::string_view bytes) = 0;
    /// Waits until the content and the name of the file are on the disk, and closes the file.
    virtual std::optional<SystemError> Finish() = 0;
};

/// `Required` makes CreateReplacementFile fail if there is no file to replace, and permits it on Linux to
/// replace a read-only file, because there, only deleting a file's name is needed, and the folder permits it.
enum class OldFile { Optional, Required };

/// Creates a temporary file.  Finish makes it replace the file at `path` in one step, or become that file if
/// there was none.  If Finish is not called or fails, `path` stays unchanged.  Symbolic links are followed,
/// and the permissions of the old file are kept.  If the folder does not allow new files, an existing
/// writable file is overwritten instead, and its old content is lost even if a later call fails.  Returns
/// null and sets `error` if the file is not writable or not a regular file.
std::unique_ptr<OutputFile> CreateReplacementFile(const std::filesystem::path& path, SystemError& error,
                                                  OldFile old = OldFile::Optional);

}  // namespace tallyhorn
