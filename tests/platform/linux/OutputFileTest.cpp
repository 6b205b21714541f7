#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/OutputFile.h"
#include "platform/WholeFile.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/linux/PlainUser.h"

namespace {

/// What the two functions below were called for, in order.
std::string calls;

}  // namespace

// These replace the functions of the C library in this program.
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

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

bool WriteAndFinish(const std::unique_ptr<OutputFile>& file) {
    return file && !file->Write("the ") && !file->Write("content") && !file->Finish();
}

/// After a power failure, a rename that reached the disk before the content leaves an empty file.
TEST(OutputFileTest, TheContentIsOnTheDiskBeforeTheNameIs) {
    const TemporaryFolder folder;
    SystemError error;
    // Each file is written, and then replaced.
    for (int round = 0; round < 2; ++round) {
        calls.clear();
        EXPECT_TRUE(ReplaceWholeFile(folder / "whole", "the content"));
        EXPECT_EQ(calls, "sync 11 bytes, rename, sync folder, ");
        calls.clear();
        EXPECT_TRUE(WriteAndFinish(CreateReplacementFile(folder / "replaced", error)));
        EXPECT_EQ(calls, "sync 11 bytes, rename, sync folder, ");
    }
    calls.clear();
    EXPECT_TRUE(WriteAndFinish(CreateOutputFile(folder / "new", error)));
    EXPECT_EQ(calls, "sync 11 bytes, sync folder, ");
}

/// In a folder in which no file can be created, an existing file may still be writable.
TEST(OutputFileTest, OnlyWritableFilesAreReplaced) {
    const TemporaryFolder folder;
    const auto replace = [](const fs::path& path) {
        SystemError error;
        return WriteAndFinish(CreateReplacementFile(path, error));
    };
    for (const char* const name : {"guarded", "open"})
        WriteBytes(folder / name, "before");
    fs::permissions(folder / "guarded", fs::perms::owner_read);
    fs::permissions(folder / "open", fs::perms::all);
    for (const bool takesNewFiles : {true, false}) {
        fs::permissions(folder.Path(), takesNewFiles ? fs::perms::all : fs::perms{0555});
        const PlainUser user;
        ASSERT_FALSE(std::ofstream(folder / "guarded", std::ios::app));
        ASSERT_EQ(static_cast<bool>(std::ofstream(folder / "new")), takesNewFiles);
        fs::remove(folder / "new");
        EXPECT_FALSE(replace(folder / "guarded"));
        EXPECT_EQ(replace(folder / "new"), takesNewFiles);
        fs::remove(folder / "new");
        EXPECT_TRUE(replace(folder / "open"));
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
    fs::permissions(folder / "guarded", fs::perms::owner_all);
    EXPECT_EQ(ReadBytes(folder / "guarded"), "before");
    EXPECT_EQ(ReadBytes(folder / "open"), "the content");
    EXPECT_EQ(CountFiles(folder.Path()), 2U);
}

}  // namespace
}  // namespace tallyhorn
