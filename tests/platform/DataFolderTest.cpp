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
    const std::pair<fs::path, fs::path> cases[] = {
        {home.Path(), home.Path()}, {home.Path() / "none", users}, {home.Path() / "file", users}};
    for (const auto& [program, expected] : cases)
        EXPECT_EQ(ChooseDataFolder(program), expected);
    EXPECT_EQ(CountFiles(home.Path()), 1U) << "the question creates nothing";
}

TEST(DataFolderTest, IsCreatedForItsUserAlone) {
    const TemporaryFolder home;
    WriteBytes(home / "file", "x");
    for (const char* const name : {"one/two/three", "one/two", "one/two/four"}) {
        EXPECT_FALSE(MakeDataFolder(home.Path() / name)) << name;
        EXPECT_TRUE(fs::is_directory(home.Path() / name)) << name;
    }
    // Windows keeps no such permissions: there, the folder inherits the access rights of its parent.
    fs::permissions(home.Path(), fs::perms::owner_all);
    if (fs::status(home.Path()).permissions() == fs::perms::owner_all) {
        for (const char* const name : {"one", "one/two/three"})
            EXPECT_EQ(fs::status(home.Path() / name).permissions(), fs::perms::owner_all) << name;
    }
    for (const char* const name : {"file", "file/below"}) {
        const std::optional<SystemError> error = MakeDataFolder(home.Path() / name);
        ASSERT_TRUE(error) << name;
        EXPECT_NE(error->Number, 0) << name;
    }
    EXPECT_EQ(ReadBytes(home / "file"), "x");
}

TEST(DataFolderTest, FindsTheUsersFileBeforeTheInstalledOne) {
    const TemporaryFolder data;
    const TemporaryFolder program;
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
        std::FILE* const file = std::fopen(NarrowPath(folder / "file").c_str(), "rb");
        EXPECT_NE(file, nullptr) << folder;
        if (file != nullptr)
            std::fclose(file);
    }
}

}  // namespace
}  // namespace tallyhorn
