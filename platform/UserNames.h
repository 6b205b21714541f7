#pragma once

#include <memory>
#include <string>

namespace tallyhorn {

/// What the system calls the user and the machine, in UTF-8; empty where it does not tell.  Asked anew each
/// time, from one thread at a time.
class UserNames {
public:
    virtual ~UserNames() = default;
    /// The name that the user has logged on with.
    virtual std::string UserName() const = 0;
    virtual std::string ComputerName() const = 0;
};

std::unique_ptr<UserNames> MakeUserNames();

}  // namespace tallyhorn
