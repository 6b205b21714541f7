#include "platform/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileReplacement.h"
#include "platform/linux/FileWriting.h"

namespace tallyhorn {
namespace {

/// The number of bytes to read at a time after the file has proved longer than its reported size.
constexpr std::size_t MoreRoom = 65536;

/// Overwrites a file in a folder that takes no new file.  The file is cut after the new bytes are written, so
/// that a full disk loses as little as possible.
bool OverwriteWholeFile(const std::string& path, std::string_view bytes) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return file && WriteAll(file.Get(), bytes) &&
           ftruncate(file.Get(), static_cast<off_t>(bytes.size())) == 0 && fsync(file.Get()) == 0;
}

}  // namespace

ReadOutcome ReadWholeFile(const std::string& path, std::size_t maximum, std::string& bytes) {
    bytes.clear();
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file)
        return errno == ENOENT ? ReadOutcome::Missing : ReadOutcome::Failed;
    struct stat status {};
    if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
        return ReadOutcome::Failed;
    // The size is only a hint, since the file may be changing.
    std::size_t room = std::min(static_cast<std::size_t>(status.st_size), maximum) + 1;
    while (true) {
        const std::size_t filled = bytes.size();
        bytes.resize(filled + room);
        const ssize_t count = read(file.Get(), bytes.data() + filled, room);
        bytes.resize(filled + (count > 0 ? static_cast<std::size_t>(count) : 0));
        if (count == 0)
            return ReadOutcome::Complete;
        if ((count < 0 && errno != EINTR) || bytes.size() > maximum)
            return ReadOutcome::Failed;
        room = std::min(MoreRoom, maximum + 1 - bytes.size());
    }
}

bool ReplaceWholeFile(const std::string& path, std::string_view bytes) {
    FileReplacement file;
    if (file.Begin(path))
        return file.Write(bytes) && file.Commit();
    return errno == EACCES && OverwriteWholeFile(path, bytes);
}

}  // namespace tallyhorn
