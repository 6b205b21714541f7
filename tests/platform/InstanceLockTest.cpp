#include <gtest/gtest.h>

#include <utility>

#include "platform/InstanceLock.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

TEST(InstanceLockTest, TheFirstInstanceHoldsItUntilItEnds) {
    TestMailslot mailslot;
    InstanceLock other(mailslot.Name + "2", mailslot.Folder);
    EXPECT_TRUE(other.Acquire());
    const auto make = [&] { return std::make_unique<InstanceLock>(mailslot.Name, mailslot.Folder); };
    auto first = make();
    auto second = make();
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(first->Acquire());
        EXPECT_TRUE(first->Acquire()) << "asking again changes nothing";
        EXPECT_FALSE(second->Acquire());
        first = std::exchange(second, make());
    }
    // A mailslot of the same name uses other files of the folder.
    for (const char* const before : {"", "instance-"})
        EXPECT_NE(mailslot.Transport->Create(std::string(MailslotPrefix) + before + mailslot.Name, 401),
                  nullptr);
    EXPECT_TRUE(InstanceLock(mailslot.Name + "3", mailslot.Home / "missing/folder").Acquire())
        << "without a folder nothing is locked";
}

}  // namespace
}  // namespace tallyhorn
