#include "config/TextProfileFunctions.h"

#include <gtest/gtest.h>

#include "platform/WholeFile.h"
#include "tests/config/TemporaryFolder.h"
#include "tests/tools/ProfileCase.h"

namespace tallyhorn::test {
namespace {

namespace fs = std::filesystem;

std::size_t CountFiles(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

bool Write(const fs::path& path, const char* value) {
    return TextProfileFunctions().WritePrivateProfileString("s", "k", value, path.string().c_str());
}

std::uint32_t ReadInt(const fs::path& path) {
    return TextProfileFunctions().GetPrivateProfileInt("s", "k", 77, path.string().c_str());
}

TEST(TextProfileFunctions, WritesReplaceTheFileAndLeaveNoOther) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.ini";
    EXPECT_TRUE(Write(path, nullptr));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(Write(path, "1"));
    EXPECT_TRUE(Write(path, "22"));
    EXPECT_EQ(ReadBytes(path), "[s]\r\nk=22\r\n");
    EXPECT_TRUE(Write(path, nullptr));
    EXPECT_EQ(ReadBytes(path), "[s]\r\n");
    EXPECT_EQ(CountFiles(folder.Path()), 1U);
}

/// Places that refuse even an administrator.
TEST(TextProfileFunctions, FailedWritesHarmNothing) {
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "[s]\nk=5\n");
    fs::create_directory(folder / "sub");
    EXPECT_FALSE(Write(folder / "file/a.ini", "1"));
    EXPECT_FALSE(Write(folder / "missing/a.ini", "1"));
    EXPECT_FALSE(Write(folder / "sub", "1"));
    EXPECT_EQ(ReadInt(folder / "sub"), 77U);
    EXPECT_EQ(ReadBytes(folder / "file"), "[s]\nk=5\n");
    EXPECT_EQ(CountFiles(folder.Path()), 2U);
    EXPECT_EQ(CountFiles(folder / "sub"), 0U);
}

TEST(TextProfileFunctions, TooLargeFilesAreLeftAlone) {
    const TemporaryFolder folder;
    const fs::path path = folder / "large.ini";
    std::string bytes = "[s]\nk=5\n";
    bytes.resize(TextProfileFunctions::MaximumFileSize, ';');
    WriteBytes(path, bytes);
    EXPECT_EQ(ReadInt(path), 5U);
    EXPECT_TRUE(Write(path, "6"));
    EXPECT_FALSE(Write(path, "12")) << "would grow out of reach of reading";
    EXPECT_EQ(ReadInt(path), 6U);
    WriteBytes(path, bytes + ';');
    EXPECT_EQ(ReadInt(path), 77U);
    EXPECT_FALSE(Write(path, "6"));
    EXPECT_EQ(fs::file_size(path), TextProfileFunctions::MaximumFileSize + 1);
}

/// A null pointer where there should be a text or a buffer is answered, not followed.
TEST(TextProfileFunctions, NullPointers) {
    TextProfileFunctions functions;
    char byte = '#';
    EXPECT_EQ(functions.GetPrivateProfileString("s", "k", "d", nullptr, 9, "none.ini"), 0U);
    EXPECT_EQ(functions.GetPrivateProfileString("s", nullptr, "d", &byte, 0, nullptr), 0U);
    EXPECT_EQ(functions.GetPrivateProfileInt(nullptr, "k", 3, "none.ini"), 3U);
    EXPECT_EQ(functions.GetPrivateProfileSection(nullptr, &byte, 0, "none.ini"), 0U);
    EXPECT_EQ(byte, '#');
    EXPECT_EQ(functions.GetPrivateProfileSectionNames(&byte, 1, nullptr), 0U);
    EXPECT_EQ(byte, '\0');
    EXPECT_FALSE(functions.WritePrivateProfileString("s", "k", "v", nullptr));
}

TEST(WholeFile, ReadsUpToTheMaximumAndTellsWhatIsMissing) {
    const TemporaryFolder folder;
    const std::string path = (folder / "f").string();
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

TEST(WholeFile, KeepsPermissionsAndLinks) {
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
    EXPECT_TRUE(ReplaceWholeFile((folder / "link").string(), "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadBytes(folder / "real/f"), "new");
    EXPECT_EQ(fs::status(folder / "real/f").permissions(), before);

    fs::create_symlink("real/later", folder / "early");
    EXPECT_TRUE(ReplaceWholeFile((folder / "early").string(), "made"));
    EXPECT_EQ(ReadBytes(folder / "real/later"), "made");
    fs::create_symlink("round", folder / "round");
    EXPECT_FALSE(ReplaceWholeFile((folder / "round").string(), "never"));
    EXPECT_EQ(CountFiles(folder.Path()), 4U);
    EXPECT_EQ(CountFiles(folder / "real"), 2U);
}

}  // namespace
}  // namespace tallyhorn::test
