#include "platform/DataFolder.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace tallyhorn {
namespace {

constexpr mode_t OwnerOnly = 0700;

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string AccountHome() {
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 16384> texts;
    return getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr
               ? found->pw_dir
               : "";
}

}  // namespace

bool MayWriteInto(const std::filesystem::path& folder) {
    // The trailing dot is found in a folder alone.
    return faccessat(AT_FDCWD, (folder / ".").c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::filesystem::path UserDataFolder() {
    return DesktopDataFolder(Variable("XDG_DATA_HOME"), Variable("HOME"), AccountHome());
}

bool MakePrivateFolder(const std::filesystem::path& folder) {
    return mkdir(folder.c_str(), OwnerOnly) == 0;
}

std::string NarrowPath(const std::filesystem::path& path) {
    return path.string();
}

}  // namespace tallyhorn
