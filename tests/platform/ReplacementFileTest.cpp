#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/OutputFile.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// The number of the failure, 0 for none.
int Replace(const fs::path& path, std::string_view bytes) {
    SystemError error;
    const auto file = CreateReplacementFile(path, error);
    if (!file) {
        EXPECT_NE(error.Number, 0) << path;
        EXPECT_NE(error.Text, "") << path;
        return error.Number;
    }
    EXPECT_FALSE(file->Write(bytes));
    return file->Finish().value_or(SystemError{}).Number;
}

TEST(ReplacementFileTest, StandsAtItsPlaceOnceItIsFinishedAndElseGoes) {
    const TemporaryFolder folder;
    for (const fs::path& path : {folder.Path() / "new", folder.Path() / "old",
                                 folder.Path() / fs::path(u"\u00DCbersicht \u2013 \u65E5\u672C.txt")}) {
        const bool exists = path.filename() == "old";
        if (exists)
            WriteBytes(path, "what stood there before, and was longer");
        for (const bool isFinished : {false, true}) {
            SystemError error;
            auto file = CreateReplacementFile(path, error);
            ASSERT_TRUE(file);
            EXPECT_FALSE(file->Write("first, "));
            EXPECT_FALSE(file->Write("second"));
            if (isFinished) {
                EXPECT_FALSE(file->Finish());
            }
            file.reset();
            EXPECT_EQ(ReadBytes(path), isFinished ? "first, second"
                                       : exists   ? "what stood there before, and was longer"
                                                  : "");
            EXPECT_EQ(fs::exists(path), isFinished || exists);
        }
    }
    EXPECT_EQ(CountFiles(folder.Path()), 3U);
}

TEST(ReplacementFileTest, RefusesWhatIsNoFileToWrite) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    WriteBytes(folder / "file", "old");
    for (const fs::path& path : {folder.Path() / "folder", folder.Path() / "missing" / "f",
                                 folder.Path() / "file" / "f", fs::path()})
        EXPECT_NE(Replace(path, "never"), 0) << path;
    EXPECT_TRUE(fs::is_directory(folder / "folder"));
    EXPECT_EQ(ReadBytes(folder / "file"), "old");
    EXPECT_EQ(CountFiles(folder.Path()), 2U);
    EXPECT_EQ(CountFiles(folder / "folder"), 0U);

    if (std::system(("mkfifo " + (folder / "pipe")).c_str()) != 0)
        GTEST_SKIP() << "no pipes with names here";
    fs::create_symlink("pipe", folder / "link");
    EXPECT_NE(Replace(folder / "link", "never, and without waiting"), 0);
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_EQ(CountFiles(folder.Path()), 4U);
}

TEST(ReplacementFileTest, AFolderThatCameMeanwhileIsAFailure) {
    const TemporaryFolder folder;
    SystemError error;
    const auto file = CreateReplacementFile(folder / "f", error);
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->Write("never"));
    fs::create_directory(folder / "f");
    EXPECT_TRUE(file->Finish());
    EXPECT_TRUE(file->Write("more")) << "the failure stays";
    EXPECT_TRUE(fs::is_directory(folder / "f"));
}

TEST(ReplacementFileTest, KeepsPermissionsAndLinks) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    WriteBytes(folder / "real/f", "old");
    fs::permissions(folder / "real/f",
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::perms before = fs::status(folder / "real/f").permissions();
    EXPECT_EQ(Replace(folder / "real/f", "new"), 0);
    EXPECT_EQ(fs::status(folder / "real/f").permissions(), before);

    std::error_code error;
    fs::create_symlink("real/f", folder / "link", error);
    if (error || !fs::is_symlink(folder / "link"))
        GTEST_SKIP() << "no symbolic links here";
    EXPECT_EQ(Replace(folder / "link", "newer"), 0);
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadBytes(folder / "real/f"), "newer");
    fs::create_symlink("real/later", folder / "early");
    EXPECT_EQ(Replace(folder / "early", "made"), 0);
    EXPECT_EQ(ReadBytes(folder / "real/later"), "made");
    fs::create_symlink("round", folder / "round");
    EXPECT_NE(Replace(folder / "round", "never"), 0);
    EXPECT_EQ(CountFiles(folder / "real"), 2U);
}

}  // namespace
}  // namespace tallyhorn
