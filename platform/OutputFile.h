#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/SystemError.h"

namespace tallyhorn {

/// Owns one new file that is written from its start; what was written stays whatever fails later.
/// Called from one thread at a time.
class OutputFile {
public:
    virtual ~OutputFile() = default;
    /// Hands all the bytes to the system; BufferedWriter makes large pieces of small ones.
    virtual std::optional<SystemError> Write(std::string_view bytes) = 0;
    /// Waits until what was written is on the disk, the file's name too, and closes the file.
    virtual std::optional<SystemError> Finish() = 0;
};

/// Null, and the reason in `error`, where it fails; what stands there already is such a failure and stays.
std::unique_ptr<OutputFile> CreateOutputFile(const std::filesystem::path& path, SystemError& error);

/// Removes a file, never a folder; a missing one is an error like any other.
std::optional<SystemError> RemoveFile(const std::filesystem::path& path);

}  // namespace tallyhorn
