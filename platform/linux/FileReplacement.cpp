#include "platform/linux/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>

#include "platform/linux/FileWriting.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr int MostLinks = 40;
constexpr int MostAttempts = 100;

/// Returns the path at the end of a chain of symbolic links; no file need exist there.  Returns nothing and
/// sets errno if the chain does not end.
std::optional<fs::path> FollowLinks(fs::path path) {
    std::error_code error;
    for (int i = 0; i < MostLinks; ++i) {
        if (!fs::is_symlink(path, error))
            return path;
        const fs::path target = fs::read_symlink(path, error);
        if (error) {
            errno = error.value();
            return std::nullopt;
        }
        path = path.parent_path() / target;
    }
    errno = ELOOP;
    return std::nullopt;
}

/// Returns whether the user may write to the old file or need not.  Replacing it by a rename would require
/// only permission for the folder.
bool MayReplace(const fs::path& path, const struct stat& status, OldFile old) {
    if (S_ISREG(status.st_mode))
        return old == OldFile::Required || faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EOPNOTSUPP;
    return false;
}

/// Returns a path in the folder of `path`, since a rename cannot move a file to another file system.  The
/// name is short, so that the result does not exceed the system's limit for paths.
fs::path TemporaryName(const fs::path& path) {
    static std::atomic<unsigned> count{0};
    std::string name = ".";
    name += std::to_string(getpid()) + "-" + std::to_string(count++) + ".tmp";
    return path.parent_path() / name;
}

/// Creates a file with an unused name.  Files with some of the names may be left over from a crash.
FileDescriptor CreateTemporary(const fs::path& target, fs::path& temporary) {
    for (int i = 0; i < MostAttempts; ++i) {
        const fs::path name = TemporaryName(target);
        FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file)
            temporary = name;
        if (file || errno != EEXIST)
            return file;
    }
    return {};
}

/// Gives the new file the owner and the permissions of the old one.  If the user is not allowed to set the
/// owner, the file belongs to the user.
bool KeepPermissions(int file, const struct stat& old) {
    struct stat now {};
    if (fstat(file, &now) != 0)
        return false;
    const bool sameOwner = now.st_uid == old.st_uid && now.st_gid == old.st_gid;
    if (!sameOwner && fchown(file, old.st_uid, old.st_gid) != 0 && errno != EPERM)
        return false;
    return fchmod(file, old.st_mode & 0777U) == 0;
}

}  // namespace

FileReplacement::~FileReplacement() {
    if (!temporary_.empty())
        unlink(temporary_.c_str());
}

bool FileReplacement::Begin(const fs::path& path, OldFile old) {
    const std::optional<fs::path> target = FollowLinks(path);
    if (!target)
        return false;
    target_ = *target;
    struct stat status {};
    const bool exists = stat(target_.c_str(), &status) == 0;
    if (exists ? !MayReplace(target_, status, old) : errno != ENOENT || old == OldFile::Required)
        return false;
    file_ = CreateTemporary(target_, temporary_);
    return file_ && (!exists || KeepPermissions(file_.Get(), status));
}

bool FileReplacement::Write(std::string_view bytes) {
    return WriteAll(file_.Get(), bytes);
}

bool FileReplacement::Commit() {
    if (fsync(file_.Get()) != 0 || !file_.Close() || std::rename(temporary_.c_str(), target_.c_str()) != 0)
        return false;
    temporary_.clear();
    // The rename must survive a power failure too.
    SyncFolderOf(target_);
    return true;
}

}  // namespace tallyhorn
