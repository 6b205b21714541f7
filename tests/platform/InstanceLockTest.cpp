#include <gtest/gtest.h>

#include <optional>

#include "platform/InstanceLock.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

TEST(InstanceLockTest, TheFirstHoldsItUntilItEnds) {
    TestMailslot slot;
    std::optional<InstanceLock> first(std::in_place, slot.Name, slot.Folder);
    InstanceLock second(slot.Name, slot.Folder);
    InstanceLock other(slot.Name + "2", slot.Folder);
    EXPECT_TRUE(first->Acquire());
    EXPECT_TRUE(first->Acquire()) << "asking again changes nothing";
    EXPECT_FALSE(second.Acquire());
    EXPECT_TRUE(other.Acquire());
    first.reset();
    EXPECT_TRUE(second.Acquire());
}

TEST(InstanceLockTest, SharesItsFolderWithAMailslotOfTheSameName) {
    TestMailslot slot;
    InstanceLock lock(slot.Name, slot.Folder);
    EXPECT_TRUE(lock.Acquire());
    EXPECT_NE(slot.Transport->Create(slot.Path, 401), nullptr);
    EXPECT_NE(slot.Transport->Create(std::string(MailslotPrefix) + "instance-" + slot.Name, 401), nullptr);
}

TEST(InstanceLockTest, ASystemThatGivesNoLockStopsNobody) {
    TestMailslot slot;
    InstanceLock lock(slot.Name, slot.Home / "missing/folder");
    EXPECT_TRUE(lock.Acquire());
}

}  // namespace
}  // namespace tallyhorn
