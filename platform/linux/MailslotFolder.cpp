#include "platform/linux/MailslotFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdlib>

namespace tallyhorn {
namespace {

constexpr mode_t OwnerOnlyFolder = 0700;
constexpr mode_t OwnerOnlyFile = 0600;
constexpr mode_t Others = 0077;

}  // namespace

std::string UserMailslotFolder() {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime != '\0')
        return std::string(runtime) + "/mailslot";
    return "/tmp/mailslot-" + std::to_string(getuid());
}

bool PrepareMailslotFolder(const std::string& folder) {
    // Fails if the folder already exists; the next line checks the folder in both cases.
    static_cast<void>(mkdir(folder.c_str(), OwnerOnlyFolder));
    return IsPrivateFolder(folder);
}

bool IsPrivateFolder(const std::string& folder) {
    const FileDescriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!opened || fstat(opened.Get(), &status) != 0)
        return false;
    return status.st_uid == geteuid() && (status.st_mode & Others) == 0;
}

FileDescriptor TakeLock(const std::string& path, bool& reachable) {
    FileDescriptor lock(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, OwnerOnlyFile));
    reachable = static_cast<bool>(lock);
    if (lock && flock(lock.Get(), LOCK_EX | LOCK_NB) != 0)
        return {};
    return lock;
}

}  // namespace tallyhorn
