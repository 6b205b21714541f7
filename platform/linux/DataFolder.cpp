#include "platform/DataFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/linux/Account.h"
#include "platform/linux/DesktopDataFolder.h"

namespace tallyhorn {
namespace {

constexpr mode_t OwnerOnly = 0700;

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

bool MayWriteInto(const std::filesystem::path& folder) {
    // A path that ends in "/." exists only if it names a folder.
    return faccessat(AT_FDCWD, (folder / ".").c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::string DesktopDataFolder(std::string_view data, std::string_view home, std::string_view accountHome) {
    if (data.starts_with('/'))
        return std::string(data);
    if (!home.starts_with('/'))
        home = accountHome;
    return home.starts_with('/') ? std::string(home) + "/.local/share" : "";
}

std::filesystem::path UserDataFolder() {
    return DesktopDataFolder(Variable("XDG_DATA_HOME"), Variable("HOME"),
                             AccountText(geteuid(), &passwd::pw_dir));
}

bool MakePrivateFolder(const std::filesystem::path& folder) {
    return mkdir(folder.c_str(), OwnerOnly) == 0;
}

std::string NarrowPath(const std::filesystem::path& path) {
    return path.string();
}

}  // namespace tallyhorn
