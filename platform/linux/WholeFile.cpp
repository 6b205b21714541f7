#include "platform/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileWriting.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr int MostLinks = 40;
constexpr int MostAttempts = 100;
/// Read at once behind what the file's size promised.
constexpr std::size_t MoreRoom = 65536;

/// The file that a chain of links ends at, there or not; nothing for a chain that goes round.
std::optional<fs::path> FollowLinks(fs::path path) {
    std::error_code error;
    for (int i = 0; i < MostLinks; ++i) {
        if (!fs::is_symlink(path, error))
            return path;
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            return std::nullopt;
        path = path.parent_path() / target;
    }
    return std::nullopt;
}

/// A name in the same folder, since a rename cannot leave the file system; short, so that it fits where
/// `path` does.
fs::path TemporaryName(const fs::path& path) {
    static std::atomic<unsigned> count{0};
    std::string name = ".";
    name += std::to_string(getpid()) + "-" + std::to_string(count++) + ".tmp";
    return path.parent_path() / name;
}

/// Owner and permissions of the old file on the new one; an owner that may not be set stays the writer.
bool KeepPermissions(int file, const struct stat& old) {
    struct stat now {};
    if (fstat(file, &now) != 0)
        return false;
    const bool sameOwner = now.st_uid == old.st_uid && now.st_gid == old.st_gid;
    if (!sameOwner && fchown(file, old.st_uid, old.st_gid) != 0 && errno != EPERM)
        return false;
    return fchmod(file, old.st_mode & 0777U) == 0;
}

/// Creates a file under a name that is free; after a crash some names may not be.
FileDescriptor CreateTemporary(const fs::path& target, fs::path& temporary) {
    FileDescriptor file;
    for (int i = 0; i < MostAttempts && !file; ++i) {
        temporary = TemporaryName(target);
        file = FileDescriptor(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (!file && errno != EEXIST)
            break;
    }
    return file;
}

/// The new file's name, complete and on the disk; nothing, and no file, where that fails.
std::optional<fs::path> WriteTemporary(const fs::path& target, const struct stat* old,
                                       std::string_view bytes) {
    fs::path temporary;
    FileDescriptor file = CreateTemporary(target, temporary);
    if (!file)
        return std::nullopt;
    const bool written = (old == nullptr || KeepPermissions(file.Get(), *old)) &&
                         WriteAll(file.Get(), bytes) && fsync(file.Get()) == 0;
    if (file.Close() && written)
        return temporary;
    unlink(temporary.c_str());
    return std::nullopt;
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
    // The size is a guess at what will be read: the file may change meanwhile.
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
    const std::optional<fs::path> target = FollowLinks(path);
    if (!target)
        return false;
    struct stat old {};
    const bool exists = stat(target->c_str(), &old) == 0;
    if (!exists && errno != ENOENT)
        return false;
    // A rename asks for the folder's permission alone; the file's own would be passed over.
    if (exists && (!S_ISREG(old.st_mode) || faccessat(AT_FDCWD, target->c_str(), W_OK, AT_EACCESS) != 0))
        return false;
    const std::optional<fs::path> temporary = WriteTemporary(*target, exists ? &old : nullptr, bytes);
    if (!temporary)
        return false;
    if (std::rename(temporary->c_str(), target->c_str()) != 0) {
        unlink(temporary->c_str());
        return false;
    }
    // The renaming itself has to last too.
    SyncFolderOf(*target);
    return true;
}

}  // namespace tallyhorn
