#include <gtest/gtest.h>

#include "platform/linux/DesktopDataFolder.h"

namespace tallyhorn {
namespace {

TEST(DesktopDataFolder, IsTheFirstAbsoluteOneOfThree) {
    EXPECT_EQ(DesktopDataFolder("/data", "/home/ann", "/account"), "/data");
    for (const char* const data : {"", "data", "../data"}) {
        EXPECT_EQ(DesktopDataFolder(data, "/home/ann", "/account"), "/home/ann/.local/share") << data;
        for (const char* const home : {"", "ann"})
            EXPECT_EQ(DesktopDataFolder(data, home, "/account"), "/account/.local/share") << data << home;
        EXPECT_EQ(DesktopDataFolder(data, "", ""), "") << data;
    }
}

}  // namespace
}  // namespace tallyhorn
