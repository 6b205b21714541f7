#pragma once

#include "platform/UserNames.h"

namespace tallyhorn {

/// Returns the names that a test sets.
class FakeUserNames final : public UserNames {
public:
    std::string UserName() const override { return User; }
    std::string ComputerName() const override { return Computer; }

    std::string User = "operator";
    std::string Computer = "console-pc";
};

}  // namespace tallyhorn
