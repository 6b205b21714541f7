#include "platform/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

struct FolderLock::Held {
    FileDescriptor File;
};

FolderLock::FolderLock(const std::filesystem::path& folder) : file_(folder / FileName) {}

FolderLock::~FolderLock() = default;

bool FolderLock::Acquire() {
    if (held_ != nullptr)
        return true;
    // O_NONBLOCK prevents `open` from waiting if the file is a pipe.
    FileDescriptor file(
        open(file_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600));
    if (!file)
        return true;
    if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK;
    held_ = std::make_unique<Held>(Held{std::move(file)});
    return true;
}

}  // namespace tallyhorn
