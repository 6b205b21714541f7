#include <gtest/gtest.h>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

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

    EXPECT_FALSE(Write(folder / "missing/a.ini", "1"));
    EXPECT_FALSE(Write(folder.Path(), "1"));
    EXPECT_EQ(ReadInt(folder.Path()), 77U);
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

}  // namespace
}  // namespace tallyhorn
