#include <gtest/gtest.h>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

class TextProfileFunctionsTest : public ::testing::Test {
protected:
    static bool Write(const fs::path& path, const char* value) {
        return TextProfileFunctions().WritePrivateProfileString("s", "k", value, path.string().c_str());
    }
    static std::uint32_t ReadInt(const fs::path& path) {
        return TextProfileFunctions().GetPrivateProfileInt("s", "k", 77, path.string().c_str());
    }

    const TemporaryFolder folder_;
    const fs::path path_ = folder_ / "a.ini";
};

TEST_F(TextProfileFunctionsTest, WritesReplaceTheFileAndLeaveNoOther) {
    EXPECT_TRUE(Write(path_, nullptr));
    EXPECT_FALSE(fs::exists(path_)) << "nothing to delete";
    EXPECT_TRUE(Write(path_, "1"));
    EXPECT_TRUE(Write(path_, "22"));
    EXPECT_EQ(ReadBytes(path_), "[s]\r\nk=22\r\n");
    EXPECT_TRUE(Write(path_, nullptr));
    EXPECT_EQ(ReadBytes(path_), "[s]\r\n");
    EXPECT_FALSE(Write(folder_ / "missing/a.ini", "1"));
    EXPECT_FALSE(Write(folder_.Path(), "1"));
    EXPECT_EQ(ReadInt(folder_.Path()), 77U);
    EXPECT_EQ(CountFiles(folder_.Path()), 1U);
}

TEST_F(TextProfileFunctionsTest, AFileThatIsTooLargeIsNotOverwritten) {
    std::string bytes = "[s]\nk=5\n";
    bytes.resize(TextProfileFunctions::MaximumFileSize, ';');
    WriteBytes(path_, bytes);
    EXPECT_EQ(ReadInt(path_), 5U);
    EXPECT_TRUE(Write(path_, "6"));
    EXPECT_FALSE(Write(path_, "12")) << "the file would become too large to be read";
    EXPECT_EQ(ReadInt(path_), 6U);
    WriteBytes(path_, bytes + ';');
    EXPECT_EQ(ReadInt(path_), 77U);
    EXPECT_FALSE(Write(path_, "6"));
    EXPECT_EQ(fs::file_size(path_), TextProfileFunctions::MaximumFileSize + 1);
}

}  // namespace
}  // namespace tallyhorn
