#pragma once

#include "platform/UserNames.h"

namespace tallyhorn {

/// The names that a test gives.
class FakeUserNames final : public UserNames {
public:
    std::string UserName() const override { return User; }
    std::string ComputerName() const override { return Computer; }

    std::string User = "operator";
    std::string Computer = "console-pc";
};

}  // namespace tallyhorn
