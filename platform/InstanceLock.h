#pragma once

#include <memory>
#include <string>

namespace tallyhorn {

/// Owns the lock that shows that an instance of the program is running in this log-on session.  The system
/// releases the lock when the process ends, even by a crash.
class InstanceLock {
public:
    /// On Linux the lock is a file in `folder`, or in the user's mailslot folder if `folder` is empty.
    /// Windows ignores `folder`.
    explicit InstanceLock(std::string name, std::string folder = {});
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Returns true if no other instance holds the lock; this object then holds it until its destruction.
    /// Also returns true if the system cannot provide a lock, because two consoles are better than none.
    bool Acquire();

private:
    struct Held;

    const std::string name_;
    const std::string folder_;
    std::unique_ptr<Held> held_;
};

}  // namespace tallyhorn
