#include <gtest/gtest.h>

#include <optional>

#include "platform/InstanceLock.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

TEST(InstanceLockTest, TheFirstHoldsItUntilItEnds) {
    TestMailslot mailslot;
    std::optional<InstanceLock> first(std::in_place, mailslot.Name, mailslot.Folder);
    InstanceLock second(mailslot.Name, mailslot.Folder);
    InstanceLock other(mailslot.Name + "2", mailslot.Folder);
    EXPECT_TRUE(first->Acquire());
    EXPECT_TRUE(first->Acquire()) << "asking again changes nothing";
    EXPECT_FALSE(second.Acquire());
    EXPECT_TRUE(other.Acquire());
    first.reset();
    EXPECT_TRUE(second.Acquire());
}

TEST(InstanceLockTest, SharesItsFolderWithAMailslotOfTheSameName) {
    TestMailslot mailslot;
    InstanceLock lock(mailslot.Name, mailslot.Folder);
    EXPECT_TRUE(lock.Acquire());
    EXPECT_NE(mailslot.Transport->Create(mailslot.Path, 401), nullptr);
    EXPECT_NE(mailslot.Transport->Create(std::string(MailslotPrefix) + "instance-" + mailslot.Name, 401),
              nullptr);
}

TEST(InstanceLockTest, ASystemThatGivesNoLockStopsNobody) {
    TestMailslot mailslot;
    InstanceLock lock(mailslot.Name, mailslot.Home / "missing/folder");
    EXPECT_TRUE(lock.Acquire());
}

}  // namespace
}  // namespace tallyhorn
