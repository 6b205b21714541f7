#pragma once

#include <memory>
#include <string>

namespace tallyhorn {

/// The port for the names of the user and the machine, in UTF-8.  Each call queries the system; the result is
/// empty if the system does not provide the name.  For one thread at a time.
class UserNames {
public:
    virtual ~UserNames() = default;
    /// Returns the log-on name of the user.
    virtual std::string UserName() const = 0;
    virtual std::string ComputerName() const = 0;
};

std::unique_ptr<UserNames> MakeUserNames();

}  // namespace tallyhorn
