#include "platform/linux/FileWriting.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        // A write of 0 bytes does not set errno.
        if (count == 0)
            errno = EIO;
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void SyncFolderOf(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const FileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file)
        fsync(file.Get());
}

}  // namespace tallyhorn
