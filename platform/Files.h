#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/InputFile.h"
#include "platform/OutputFile.h"
#include "platform/SystemError.h"

namespace tallyhorn {

/// Owns one open file that grows at its end.  For one thread at a time, except that Sync may run in a second
/// thread.
class AppendFile {
public:
    virtual ~AppendFile() = default;
    /// Hands the bytes to the system, which keeps them even if this process ends.  After a failure, some of
    /// them may have been written.
    virtual std::optional<SystemError> Write(std::string_view bytes) = 0;
    /// Waits until all bytes that were written before the call are on the disk (`fdatasync`,
    /// `FlushFileBuffers`).
    virtual std::optional<SystemError> Sync() = 0;
};

/// Port: the files of the data folder that must survive a crash and a power failure.  Tests implement it in
/// memory and stop it at any operation.  Safe in any thread, but not for the same path at the same time.
class Files {
public:
    enum class Opening { Opened, Missing, Failed };

    virtual ~Files() = default;

    /// Opens a regular file to read it, and sets `file`.  Sets `error` if the result is `Failed`.  Does not
    /// block if `path` is a pipe, which counts as `Failed`.
    virtual Opening Open(const std::filesystem::path& path, std::unique_ptr<InputFile>& file,
                         SystemError& error) = 0;
    /// Opens a file to append to its first `kept` bytes and removes the others.  Creates the file, for this
    /// user only, if it does not exist; its name is then on the disk when this returns.  The file may be
    /// renamed while it is open.  Returns null and sets `error` on failure.
    virtual std::unique_ptr<AppendFile> OpenToAppend(const std::filesystem::path& path, std::uint64_t kept,
                                                     SystemError& error) = 0;
    /// Does what CreateReplacementFile does with `OldFile::Required`.
    virtual std::unique_ptr<OutputFile> CreateReplacement(const std::filesystem::path& path,
                                                          SystemError& error) = 0;
    /// Renames a file in its folder; replaces the file `to` if there is one, which must not be open, because
    /// Windows refuses that.  The new name is on the disk when this returns.
    virtual std::optional<SystemError> Rename(const std::filesystem::path& from,
                                              const std::filesystem::path& to) = 0;
    /// Removes a file; a missing one is no error.  The removal is on the disk when this returns.
    virtual std::optional<SystemError> Remove(const std::filesystem::path& path) = 0;
    /// Preserves the present content of `path` in a second file `aside`, which must not exist.  Renames the
    /// file if it cannot be opened to read it, so that a readable file can take its place.  Otherwise `path`
    /// stays, and `aside` is a hard link or, if the file system permits none, a copy.
    virtual std::optional<SystemError> KeepAside(const std::filesystem::path& path,
                                                 const std::filesystem::path& aside) = 0;
    /// Returns the paths that begin with `prefix` and name something in its folder.  Returns none if the
    /// folder cannot be read.
    virtual std::vector<std::filesystem::path> PathsBeginningWith(const std::filesystem::path& prefix) = 0;
};

/// Returns the system's files.
std::unique_ptr<Files> MakeFiles();

}  // namespace tallyhorn
