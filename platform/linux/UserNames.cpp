#include "platform/UserNames.h"

#include <unistd.h>

#include <array>
#include <climits>

#include "platform/linux/Account.h"

namespace tallyhorn {
namespace {

class LinuxUserNames final : public UserNames {
public:
    std::string UserName() const override { return AccountText(getuid(), &passwd::pw_name); }
    std::string ComputerName() const override {
        std::array<char, HOST_NAME_MAX + 1> name{};
        return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
    }
};

}  // namespace

std::unique_ptr<UserNames> MakeUserNames() {
    return std::make_unique<LinuxUserNames>();
}

}  // namespace tallyhorn
