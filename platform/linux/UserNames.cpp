#include "platform/UserNames.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>
#include <string_view>

namespace tallyhorn {
namespace {

/// Of UTF-8.  Such names hardly ever leave ASCII: the letters of Latin-1 are kept, and each byte of any other
/// character is a question mark.
std::string AnsiName(std::string_view utf8) {
    std::string ansi;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const auto next = static_cast<unsigned char>(i + 1 < utf8.size() ? utf8[i + 1] : '\0');
        const bool isLatin =
            (byte == 0xC2 && next >= 0xA0 && next <= 0xBF) || (byte == 0xC3 && next >= 0x80 && next <= 0xBF);
        if (isLatin)
            ++i;
        ansi += static_cast<char>(isLatin ? ((byte & 3U) << 6U) | (next & 0x3FU) : byte < 0x80 ? byte : '?');
    }
    return ansi;
}

class LinuxUserNames final : public UserNames {
public:
    std::string UserName() const override {
        std::array<char, 16384> memory{};
        passwd entry{};
        passwd* found = nullptr;
        getpwuid_r(getuid(), &entry, memory.data(), memory.size(), &found);
        return found != nullptr ? AnsiName(found->pw_name) : "";
    }
    std::string ComputerName() const override {
        std::array<char, HOST_NAME_MAX + 1> name{};
        return gethostname(name.data(), name.size() - 1) == 0 ? AnsiName(name.data()) : "";
    }
};

}  // namespace

std::unique_ptr<UserNames> MakeUserNames() {
    return std::make_unique<LinuxUserNames>();
}

}  // namespace tallyhorn
