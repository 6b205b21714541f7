#pragma once

#include <cstdint>

namespace tallyhorn {

/// Shows how many of the backup's messages have been loaded so far.
/// Called from the user-interface thread, some hundreds of times a second at most.
class BackupProgress {
public:
    virtual ~BackupProgress() = default;
    virtual void Show(std::uint64_t done, std::uint64_t total) = 0;
};

}  // namespace tallyhorn
