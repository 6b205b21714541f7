#pragma once

#include <filesystem>
#include <memory>

namespace tallyhorn {

/// Owns the lock that shows that a console uses a data folder, in any log-on session of this or another
/// machine.  The system releases the lock when the process ends, even if it is killed.
class FolderLock {
public:
    /// The file that is locked.  On Linux it stays in the folder; on Windows it exists only while it is
    /// locked.
    static constexpr const char* FileName = ".lock";

    explicit FolderLock(const std::filesystem::path& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// Returns false if another object holds the lock; otherwise this object holds it until its destruction.
    /// Also returns true if the folder permits no lock, for example because it is read-only.
    bool Acquire();

private:
    struct Held;

    const std::filesystem::path file_;
    std::unique_ptr<Held> held_;
};

}  // namespace tallyhorn
