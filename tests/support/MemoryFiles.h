#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/Files.h"

namespace tallyhorn {

/// Files in memory.  An operation is a call that changes something; operations are counted from 0.
class MemoryFiles final : public Files {
public:
    /// What happens to the operation with the number FailsAt.
    enum class Fault {
        None,
        StopBefore,  ///< the process ends before the operation
        StopAfter,   ///< the process ends after the operation
        StopWithin,  ///< the process ends when half of the bytes are written, otherwise as StopBefore
        DiskFull,    ///< the operation and the next FullFor - 1 operations that need room fail
    };
    Fault Kind = Fault::None;
    int FailsAt = 0;
    int FullFor = 1;
    int Operations = 0;
    /// Files that may not be read.
    std::set<std::filesystem::path> Unreadable;

    /// Makes operations wait until the lock is destroyed, as those of a disk that does not answer do.
    std::unique_lock<std::mutex> Hang() { return std::unique_lock(mutex_); }

    bool HasStopped() const { return stopped_; }
    /// Returns the files as a new process finds them.
    std::shared_ptr<MemoryFiles> AfterCrash() const;
    /// Returns the files as they are after a power failure: without names that were not synced, and with
    /// `unsynced`, between 0 and 1, of the bytes that were written after the last sync of their file.
    std::shared_ptr<MemoryFiles> AfterPowerFailure(double unsynced) const;
    /// Returns the bytes of a file, or nothing if there is none.
    std::optional<std::string> Bytes(const std::filesystem::path& path) const;
    void Put(const std::filesystem::path& path, std::string bytes);
    std::size_t Count() const { return names_.size(); }

    Opening Open(const std::filesystem::path& path, std::unique_ptr<InputFile>& file,
                 SystemError& error) override;
    std::unique_ptr<AppendFile> OpenToAppend(const std::filesystem::path& path, std::uint64_t kept,
                                             SystemError& error) override;
    std::unique_ptr<OutputFile> CreateReplacement(const std::filesystem::path& path,
                                                  SystemError& error) override;
    std::optional<SystemError> Rename(const std::filesystem::path& from,
                                      const std::filesystem::path& to) override;
    std::optional<SystemError> Remove(const std::filesystem::path& path) override;
    std::optional<SystemError> KeepAside(const std::filesystem::path& path,
                                         const std::filesystem::path& aside) override;
    std::vector<std::filesystem::path> PathsBeginningWith(const std::filesystem::path& prefix) override;

private:
    class Appended;
    class Replacement;
    struct Content {
        std::string Written;
        std::string Synced;
    };
    using Names = std::map<std::filesystem::path, std::shared_ptr<Content>>;

    /// Counts an operation and returns whether it fails.  `needsRoom` is false for operations that succeed on
    /// a full disk.  Calls `effect` unless the operation fails or the process ends before it.
    template <typename Effect>
    std::optional<SystemError> Do(bool needsRoom, Effect effect);
    std::optional<SystemError> Write(Content& content, std::string_view bytes);

    std::mutex mutex_;
    Names names_;
    bool stopped_ = false;
    bool within_ = false;  ///< whether the process ends within the current operation
};

}  // namespace tallyhorn
