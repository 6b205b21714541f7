#include <gtest/gtest.h>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/linux/PlainUser.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

TEST(UnreadableProfileTest, AFileThatCannotBeReadIsNotOverwritten) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.ini";
    WriteBytes(path, "[s]\r\nk=5\r\n");
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(path, fs::perms{0222});
    {
        const PlainUser user;
        TextProfileFunctions functions;
        EXPECT_EQ(functions.GetPrivateProfileInt("s", "k", 77, path.c_str()), 77U);
        EXPECT_FALSE(functions.WritePrivateProfileString("s", "k", "6", path.c_str()));
    }
    fs::permissions(path, fs::perms{0444});
    EXPECT_EQ(ReadBytes(path), "[s]\r\nk=5\r\n");
}

}  // namespace
}  // namespace tallyhorn
