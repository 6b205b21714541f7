#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <utility>

#include "platform/Files.h"
#include "platform/InputFile.h"
#include "platform/OutputFile.h"
#include "platform/WholeFile.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/linux/PlainUser.h"

namespace {

/// The calls of the first two functions below, in order.
std::string calls;
bool readsFail = false;

}  // namespace

// The following functions replace those of the C library in this program.
extern "C" int fsync(int file) {
    struct stat status {};
    fstat(file, &status);
    calls +=
        S_ISDIR(status.st_mode) ? "sync folder, " : "sync " + std::to_string(status.st_size) + " bytes, ";
    return static_cast<int>(syscall(SYS_fsync, file));
}

extern "C" int rename(const char* from, const char* to) noexcept {
    calls += "rename, ";
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

extern "C" ssize_t pread(int file, void* buffer, std::size_t size, off_t position) {
    if (readsFail)
        errno = EIO;
    return readsFail ? -1 : static_cast<ssize_t>(syscall(SYS_pread64, file, buffer, size, position));
}

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

bool Replace(const fs::path& path, OldFile old = OldFile::Optional) {
    SystemError error;
    const auto file = CreateReplacementFile(path, error, old);
    return file && !file->Write("the ") && !file->Write("content") && !file->Finish();
}

/// If the rename reached the disk before the content, a power failure could leave an empty file.
TEST(OutputFileTest, TheContentIsOnTheDiskBeforeTheNameIs) {
    const TemporaryFolder folder;
    calls.clear();
    const std::string path = folder / "replaced";
    // The first round creates each file, the others replace it.
    for (const gid_t group : {0U, 4242U, 0U}) {
        EXPECT_TRUE(ReplaceWholeFile(folder / "whole", "the content"));
        EXPECT_EQ(std::exchange(calls, ""), "sync 11 bytes, rename, sync folder, ");
        // Only root can give the file away, which must then keep its owner and its group.
        const bool given = chown(path.c_str(), 4242 - group, group) == 0;
        EXPECT_TRUE(Replace(path));
        EXPECT_EQ(std::exchange(calls, ""), "sync 11 bytes, rename, sync folder, ");
        struct stat status {};
        EXPECT_TRUE(stat(path.c_str(), &status) == 0 &&
                    (!given || (status.st_uid == 4242 - group && status.st_gid == group)));
    }
}

/// In a folder in which no file can be created, an existing file may still be writable.
TEST(OutputFileTest, OnlyWritableFilesAreReplaced) {
    const TemporaryFolder folder;
    WriteBytes(folder / "guarded", "before");
    WriteBytes(folder / "open", "before");
    fs::permissions(folder / "guarded", fs::perms::owner_read);
    fs::permissions(folder / "open", fs::perms::all);
    for (const bool takesNewFiles : {true, false}) {
        fs::permissions(folder.Path(), takesNewFiles ? fs::perms::all : fs::perms{0555});
        const PlainUser user;
        ASSERT_FALSE(std::ofstream(folder / "guarded", std::ios::app));
        ASSERT_EQ(static_cast<bool>(std::ofstream(folder / "new")), takesNewFiles);
        fs::remove(folder / "new");
        EXPECT_FALSE(Replace(folder / "guarded"));
        EXPECT_EQ(Replace(folder / "new"), takesNewFiles);
        fs::remove(folder / "new");
        EXPECT_TRUE(Replace(folder / "open"));
        for (const char* const name : {"guarded", "new", "open"})
            EXPECT_EQ(ReplaceWholeFile(folder / name, "whole"),
                      name[0] == 'o' || (name[0] == 'n' && takesNewFiles));
        EXPECT_EQ(ReadBytes(folder / "open"), "whole");
        fs::remove(folder / "new");
        EXPECT_TRUE(Replace(folder / "open"));
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
    EXPECT_EQ(ReadBytes(folder / "guarded"), "before");
    EXPECT_EQ(ReadBytes(folder / "open"), "the content");
    EXPECT_EQ(CountFiles(folder.Path()), 2U);
}

/// Even a read-only file is replaced, since its folder would permit to delete it and create another.
TEST(OutputFileTest, AReplacedBackupKeepsItsPermissionsAndItsLink) {
    const TemporaryFolder folder;
    fs::permissions(folder.Path(), fs::perms::all);
    const PlainUser user;
    fs::create_symlink("file", folder / "link");
    for (const auto mode : {fs::perms{0640}, fs::perms{0444}}) {
        WriteBytes(folder / "file", "before");
        fs::permissions(folder / "file", mode);
        EXPECT_TRUE(Replace(folder / "link", OldFile::Required));
        EXPECT_EQ(ReadBytes(folder / "file"), "the content");
        EXPECT_EQ(fs::status(folder / "file").permissions(), mode);
        EXPECT_TRUE(fs::is_symlink(folder / "link"));
    }
    fs::remove(folder / "file");
    SystemError error;
    EXPECT_NE(MakeFiles()->OpenToAppend(folder / "file", 0, error), nullptr);
    EXPECT_EQ(fs::status(folder / "file").permissions(), fs::perms{0600}) << "a new backup is private";
}

TEST(OutputFileTest, AReadErrorIsNotTheEndOfTheFile) {
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "bytes");
    SystemError error;
    const auto file = OpenInputFile(folder / "file", error);
    ASSERT_TRUE(file);
    char buffer[3];
    EXPECT_TRUE(file->Read(buffer) == 3U && !file->Failed());
    readsFail = true;
    EXPECT_EQ(file->Read(buffer), 0U);
    readsFail = false;
    EXPECT_TRUE(file->Failed());
}

/// A file that may not be read must not block its name, so that a readable file can take its place.
TEST(OutputFileTest, AnUnreadableFileIsRenamedToKeepIt) {
    const TemporaryFolder folder;
    const std::unique_ptr<Files> files = MakeFiles();
    fs::permissions(folder.Path(), fs::perms::all);
    const PlainUser user;
    WriteBytes(folder / "file", "bytes");
    fs::permissions(folder / "file", fs::perms::none);
    EXPECT_FALSE(files->KeepAside(folder / "file", folder / "aside"));
    EXPECT_FALSE(fs::exists(folder / "file"));
    fs::permissions(folder / "aside", fs::perms::owner_all);
    EXPECT_EQ(ReadBytes(folder / "aside"), "bytes");
}

}  // namespace
}  // namespace tallyhorn
