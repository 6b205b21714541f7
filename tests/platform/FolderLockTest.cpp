#include <gtest/gtest.h>

#include "platform/FolderLock.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

TEST(FolderLockTest, OneAtATimeHoldsIt) {
    const TemporaryFolder folder;
    const TemporaryFolder other;
    FolderLock outside(other.Path());
    EXPECT_TRUE(outside.Acquire());
    auto first = std::make_unique<FolderLock>(folder.Path());
    FolderLock second(folder.Path());
    EXPECT_TRUE(first->Acquire() && first->Acquire()) << "asking again changes nothing";
    EXPECT_FALSE(second.Acquire());
    first.reset();
    EXPECT_TRUE(second.Acquire());
    EXPECT_TRUE(FolderLock(folder.Path() / "missing").Acquire()) << "without a folder nothing is locked";
    std::filesystem::create_directory(folder.Path() / "in the way");
    std::filesystem::create_directory(folder.Path() / "in the way" / FolderLock::FileName);
    EXPECT_TRUE(FolderLock(folder.Path() / "in the way").Acquire());
}

}  // namespace
}  // namespace tallyhorn
