#include "platform/UserNames.h"

#include <windows.h>

// Needs the one above.
#include <lmcons.h>

#include <array>

namespace tallyhorn {
namespace {

class WindowsUserNames final : public UserNames {
public:
    std::string UserName() const override {
        std::array<char, UNLEN + 1> name{};
        auto size = static_cast<DWORD>(name.size());
        return GetUserNameA(name.data(), &size) != 0 ? name.data() : "";
    }
    std::string ComputerName() const override {
        std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
        auto size = static_cast<DWORD>(name.size());
        return GetComputerNameA(name.data(), &size) != 0 ? name.data() : "";
    }
};

}  // namespace

std::unique_ptr<UserNames> MakeUserNames() {
    return std::make_unique<WindowsUserNames>();
}

}  // namespace tallyhorn
