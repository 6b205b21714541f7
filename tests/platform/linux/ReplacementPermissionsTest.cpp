#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/OutputFile.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// Root ignores permissions, so a test that runs as root acts as the user "nobody" during the object's life.
class PlainUser {
public:
    PlainUser() {
        if (before_ == 0 && seteuid(Nobody) != 0)
            _exit(1);
    }
    ~PlainUser() {
        if (seteuid(before_) != 0)
            _exit(1);
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    static constexpr uid_t Nobody = 65534;

    const uid_t before_ = geteuid();
};

bool Replace(const fs::path& path, std::string_view bytes) {
    SystemError error;
    const auto file = CreateReplacementFile(path, error);
    return file && !file->Write(bytes) && !file->Finish();
}

/// In a folder in which no file can be created, an existing file may still be writable.
TEST(ReplacementPermissionsTest, OnlyWritableFilesAreReplaced) {
    const TemporaryFolder folder;
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
        EXPECT_FALSE(Replace(folder / "guarded", "never"));
        EXPECT_EQ(Replace(folder / "new", "made"), takesNewFiles);
        fs::remove(folder / "new");
        EXPECT_TRUE(Replace(folder / "open", "after"));
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
    fs::permissions(folder / "guarded", fs::perms::owner_all);
    EXPECT_EQ(ReadBytes(folder / "guarded"), "before");
    EXPECT_EQ(ReadBytes(folder / "open"), "after");
    EXPECT_EQ(CountFiles(folder.Path()), 2U);
}

}  // namespace
}  // namespace tallyhorn
