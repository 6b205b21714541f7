#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/FolderEntries.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileWriting.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t PieceSize = std::size_t{256} << 10U;

/// Opens the file with the additional flags `more`; O_NONBLOCK prevents `open` from waiting for the reader of
/// a pipe.
FileDescriptor OpenToWrite(const fs::path& path, int more, mode_t mode = 0600) {
    return FileDescriptor(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | more, mode));
}

/// Returns whether the descriptor is that of a regular file; if it is not, sets errno.
bool IsRegular(int file) {
    struct stat status {};
    if (fstat(file, &status) != 0)
        return false;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EOPNOTSUPP;
    return S_ISREG(status.st_mode);
}

/// Removes all bytes after the first `kept` of a regular file.
bool Shorten(int file, std::uint64_t kept) {
    struct stat status {};
    if (!IsRegular(file) || fstat(file, &status) != 0)
        return false;
    return std::cmp_less_equal(status.st_size, kept) || ftruncate(file, static_cast<off_t>(kept)) == 0;
}

/// Writes the rest of `from` to `to`, and waits until it is on the disk.
bool CopyAll(int from, int to) {
    std::vector<char> piece(PieceSize);
    while (true) {
        const ssize_t count = read(from, piece.data(), piece.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || !WriteAll(to, {piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))}))
            return false;
        if (count == 0)
            return fsync(to) == 0;
    }
}

/// Copies the content of `from` to the new file `path`, with the same permissions.
bool CopyTo(int from, const fs::path& path) {
    struct stat status {};
    if (fstat(from, &status) != 0)
        return false;
    FileDescriptor copy = OpenToWrite(path, O_CREAT | O_EXCL, status.st_mode & 0777U);
    if (!copy)
        return false;
    if (CopyAll(from, copy.Get()) && copy.Close())
        return true;
    const int reason = errno;
    unlink(path.c_str());
    errno = reason;
    return false;
}

/// Renames the file unless `to` exists.
bool RenameToFree(const fs::path& from, const fs::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems, for example NFS, do not support RENAME_NOREPLACE.
    struct stat status {};
    return errno == EINVAL && lstat(to.c_str(), &status) != 0 && std::rename(from.c_str(), to.c_str()) == 0;
}

/// Does the work of Files::KeepAside.  Returns false and sets errno on failure.
bool Preserve(const fs::path& path, const fs::path& aside) {
    const FileDescriptor readable(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!readable)
        return RenameToFree(path, aside);
    if (!IsRegular(readable.Get()))
        return false;
    if (linkat(AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), AT_SYMLINK_FOLLOW) == 0)
        return true;
    return errno != EEXIST && CopyTo(readable.Get(), aside);
}

std::optional<SystemError> ErrorUnless(bool succeeded) {
    return succeeded ? std::nullopt : std::optional(LastSystemError());
}

class LinuxAppendFile final : public AppendFile {
public:
    explicit LinuxAppendFile(FileDescriptor file) : file_(std::move(file)) {}

    std::optional<SystemError> Write(std::string_view bytes) override {
        return ErrorUnless(WriteAll(file_.Get(), bytes));
    }
    std::optional<SystemError> Sync() override { return ErrorUnless(fdatasync(file_.Get()) == 0); }

private:
    const FileDescriptor file_;
};

class LinuxFiles final : public Files {
public:
    Opening Open(const fs::path& path, std::unique_ptr<InputFile>& file, SystemError& error) override {
        file = OpenInputFile(path, error);
        if (file)
            return Opening::Opened;
        return error.Number == ENOENT ? Opening::Missing : Opening::Failed;
    }

    std::unique_ptr<AppendFile> OpenToAppend(const fs::path& path, std::uint64_t kept,
                                             SystemError& error) override {
        FileDescriptor file = OpenToWrite(path, O_APPEND);
        const bool missing = !file && errno == ENOENT;
        if (missing)
            file = OpenToWrite(path, O_APPEND | O_CREAT);
        if (!file || !Shorten(file.Get(), kept)) {
            error = LastSystemError();
            return nullptr;
        }
        if (missing)
            SyncFolderOf(path);
        return std::make_unique<LinuxAppendFile>(std::move(file));
    }

    std::unique_ptr<OutputFile> CreateReplacement(const fs::path& path, SystemError& error) override {
        return CreateReplacementFile(path, error, OldFile::Required);
    }

    std::optional<SystemError> Rename(const fs::path& from, const fs::path& to) override {
        if (std::rename(from.c_str(), to.c_str()) != 0)
            return LastSystemError();
        SyncFolderOf(to);
        return std::nullopt;
    }

    std::optional<SystemError> Remove(const fs::path& path) override {
        if (unlink(path.c_str()) != 0)
            return ErrorUnless(errno == ENOENT);
        SyncFolderOf(path);
        return std::nullopt;
    }

    std::optional<SystemError> KeepAside(const fs::path& path, const fs::path& aside) override {
        if (!Preserve(path, aside))
            return LastSystemError();
        SyncFolderOf(aside);
        return std::nullopt;
    }

    std::vector<fs::path> PathsBeginningWith(const fs::path& prefix) override {
        return EntriesBeginningWith(prefix);
    }
};

}  // namespace

std::unique_ptr<Files> MakeFiles() {
    return std::make_unique<LinuxFiles>();
}

}  // namespace tallyhorn
