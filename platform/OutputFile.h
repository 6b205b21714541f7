#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/SystemError.h"

namespace tallyhorn {

/// Owns one file that is written from its start.  Called from one thread at a time.
class OutputFile {
public:
    virtual ~OutputFile() = default;
    /// Hands all the bytes to the system; BufferedWriter makes large pieces of small ones.
    virtual std::optional<SystemError> Write(std::string_view bytes) = 0;
    /// Waits until what was written is on the disk, the file's name too, and closes the file.
    virtual std::optional<SystemError> Finish() = 0;
};

/// A new file; what was written stays whatever fails later.  Null, and the reason in `error`, where it fails;
/// what stands there already is such a failure and stays.
std::unique_ptr<OutputFile> CreateOutputFile(const std::filesystem::path& path, SystemError& error);

/// A file that comes to be at `path`, or replaces the one there, in one step when it is finished and nothing
/// failed; otherwise all is as it was.  A symbolic link keeps pointing to the file, whose permissions stay.
/// Where the folder takes no new file, one that is there and may be written is written over instead, and a
/// failure costs it.  Null, and the reason in `error`, for a file that may not be written, or none that is
/// regular.
std::unique_ptr<OutputFile> CreateReplacementFile(const std::filesystem::path& path, SystemError& error);

/// Removes a file, never a folder; a missing one is an error like any other.
std::optional<SystemError> RemoveFile(const std::filesystem::path& path);

}  // namespace tallyhorn
