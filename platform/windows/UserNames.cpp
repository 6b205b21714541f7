#include "platform/UserNames.h"

#include <windows.h>

// Must be included after windows.h.
#include <lmcons.h>

#include <array>

namespace tallyhorn {
namespace {

/// Converts a name from the ANSI code page.  Returns an empty text if that fails.
std::string Utf8Name(const char* ansi) {
    std::array<wchar_t, UNLEN + 1> wide{};
    std::array<char, 3 * wide.size()> utf8{};
    MultiByteToWideChar(CP_ACP, 0, ansi, -1, wide.data(), wide.size());
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), -1, utf8.data(), utf8.size(), nullptr, nullptr);
    return utf8.data();
}

class WindowsUserNames final : public UserNames {
public:
    std::string UserName() const override {
        std::array<char, UNLEN + 1> name{};
        auto size = static_cast<DWORD>(name.size());
        return GetUserNameA(name.data(), &size) != 0 ? Utf8Name(name.data()) : "";
    }
    std::string ComputerName() const override {
        std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
        auto size = static_cast<DWORD>(name.size());
        return GetComputerNameA(name.data(), &size) != 0 ? Utf8Name(name.data()) : "";
    }
};

}  // namespace

std::unique_ptr<UserNames> MakeUserNames() {
    return std::make_unique<WindowsUserNames>();
}

}  // namespace tallyhorn
