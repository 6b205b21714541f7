#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/WholeFile.h"
#include "tests/fakes/FileBytes.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

TEST(WholeFileTest, ReadsUpToTheMaximumAndTellsWhatIsMissing) {
    const TemporaryFolder folder;
    const std::string path = folder / "f";
    const std::string content(
        "a\0\r\n\x1A"
        "b",
        6);
    std::string bytes = "old";
    EXPECT_EQ(ReadWholeFile(path, 10, bytes), ReadOutcome::Missing);
    EXPECT_EQ(bytes, "");
    EXPECT_TRUE(ReplaceWholeFile(path, content));
    EXPECT_EQ(ReadWholeFile(path, 6, bytes), ReadOutcome::Complete);
    EXPECT_EQ(bytes, content);
    EXPECT_EQ(ReadWholeFile(path, 5, bytes), ReadOutcome::Failed);
    EXPECT_EQ(ReadWholeFile(folder.Path().string(), 5, bytes), ReadOutcome::Failed);
    EXPECT_TRUE(ReplaceWholeFile(path, ""));
    EXPECT_EQ(ReadWholeFile(path, 5, bytes), ReadOutcome::Complete);
}

TEST(WholeFileTest, KeepsPermissionsAndLinks) {
    const TemporaryFolder folder;
    std::error_code error;
    fs::create_directory(folder / "real");
    WriteBytes(folder / "real/f", "old");
    fs::permissions(folder / "real/f",
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_symlink("real/f", folder / "link", error);
    if (error || !fs::is_symlink(folder / "link"))
        GTEST_SKIP() << "no symbolic links here";
    const fs::perms before = fs::status(folder / "real/f").permissions();
    EXPECT_TRUE(ReplaceWholeFile(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadBytes(folder / "real/f"), "new");
    EXPECT_EQ(fs::status(folder / "real/f").permissions(), before);

    fs::create_symlink("real/later", folder / "early");
    EXPECT_TRUE(ReplaceWholeFile(folder / "early", "made"));
    EXPECT_EQ(ReadBytes(folder / "real/later"), "made");
    fs::create_symlink("round", folder / "round");
    EXPECT_FALSE(ReplaceWholeFile(folder / "round", "never"));
    EXPECT_EQ(CountFiles(folder.Path()), 4U);
    EXPECT_EQ(CountFiles(folder / "real"), 2U);
}

}  // namespace
}  // namespace tallyhorn
