#include <gtest/gtest.h>

#include <string>

#include "platform/WholeFile.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {
namespace {

TEST(WholeFileTest, ReadsUpToTheMaximumAndTellsWhatIsMissing) {
    const TemporaryFolder folder;
    const std::string path = folder / "f";
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

}  // namespace
}  // namespace tallyhorn
