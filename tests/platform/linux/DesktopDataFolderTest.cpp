#include <gtest/gtest.h>

#include "platform/linux/DesktopDataFolder.h"

namespace tallyhorn {
namespace {

TEST(DesktopDataFolder, IsTheFirstAbsoluteOneOfThree) {
    const struct {
        const char* Data;
        const char* Home;
        const char* AccountHome;
        const char* Expected;
    } cases[] = {
        {"/data", "/home/ann", "/home/account", "/data"},
        {"", "/home/ann", "/home/account", "/home/ann/.local/share"},
        {"data", "/home/ann", "/home/account", "/home/ann/.local/share"},
        {"../data", "", "/home/account", "/home/account/.local/share"},
        {"", "ann", "/home/account", "/home/account/.local/share"},
        {"", "", "", ""},
    };
    for (const auto& [data, home, accountHome, expected] : cases)
        EXPECT_EQ(DesktopDataFolder(data, home, accountHome), expected) << data << ' ' << home;
}

}  // namespace
}  // namespace tallyhorn
