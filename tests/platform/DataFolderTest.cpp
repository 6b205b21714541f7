#include <gtest/gtest.h>

#include "platform/DataFolder.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

TEST(DataFolderTest, IsTheProgramFolderIfThatIsWritable) {
    const TemporaryFolder home;
    WriteBytes(home / "file", "x");
    const fs::path users = UserDataFolder() / "tallyhorn-console";
    EXPECT_TRUE(users.is_absolute());
    EXPECT_EQ(ChooseDataFolder(home.Path()), home.Path());
    for (const char* const name : {"none", "file"})
        EXPECT_EQ(ChooseDataFolder(home.Path() / name), users) << name;
    EXPECT_EQ(CountFiles(home.Path()), 1U) << "the choice creates nothing";
}

TEST(DataFolderTest, IsCreatedForItsUserAlone) {
    const TemporaryFolder home;
    WriteBytes(home / "file", "x");
    for (const char* const name : {"one/two/three", "one/two", "one/two/four"}) {
        EXPECT_FALSE(MakeDataFolder(home.Path() / name)) << name;
        EXPECT_TRUE(fs::is_directory(home / name)) << name;
    }
    // Windows has no such permissions: there, the folder inherits the access rights of its parent.
    fs::permissions(home.Path(), fs::perms::owner_all);
    if (fs::status(home.Path()).permissions() == fs::perms::owner_all) {
        for (const char* const name : {"one", "one/two/three"})
            EXPECT_EQ(fs::status(home.Path() / name).permissions(), fs::perms::owner_all) << name;
    }
    for (const char* const name : {"file", "file/below"})
        EXPECT_NE(MakeDataFolder(home.Path() / name).value_or(SystemError{}).Number, 0) << name;
    EXPECT_EQ(ReadBytes(home / "file"), "x");
}

TEST(DataFolderTest, FindsTheUsersFileBeforeTheInstalledOne) {
    const TemporaryFolder data, program;
    const auto found = [&](const char* name) { return FindOwnFile({data.Path(), program.Path()}, name); };
    fs::create_directory(data / "sound.wav");
    EXPECT_EQ(found("sound.wav"), "") << "it is a folder";
    WriteBytes(data / "mine", "");
    WriteBytes(program / "both", "");
    WriteBytes(data / "both", "");
    EXPECT_EQ(found("mine"), data.Path() / "mine");
    EXPECT_EQ(found("both"), data.Path() / "both");
}

TEST(DataFolderTest, NarrowPathsCanBeOpened) {
    const TemporaryFolder home;
    for (const std::u8string_view name : {u8"plain", u8"J\u00fcrgen", u8"\u03a9\u8a9e"}) {
        const fs::path folder = home.Path() / name;
        fs::create_directory(folder);
        WriteBytes(folder / "file", "x");
        EXPECT_TRUE(std::ifstream(NarrowPath(folder / "file"))) << folder;
    }
}

}  // namespace
}  // namespace tallyhorn
