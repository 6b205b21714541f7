#pragma once

#include <memory>
#include <string>

namespace tallyhorn {

/// Owns the sign that one instance of the program runs in this log-on session; the system takes it back
/// however the process ends. Called from the user-interface thread.
class InstanceLock {
public:
    /// `folder` stands in for the user's mailslot folder where the lock is a file; elsewhere it means
    /// nothing.
    explicit InstanceLock(std::string name, std::string folder = {});
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Whether this is the first instance, which it stays until it is destroyed.  Where the system gives no
    /// lock at all the answer is yes: better two consoles than none.
    bool Acquire();

private:
    struct Held;

    const std::string name_;
    const std::string folder_;
    std::unique_ptr<Held> held_;
};

}  // namespace tallyhorn
