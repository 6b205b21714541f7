#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <string>
#include <utility>

#include "tests/storage/ExportFixture.h"

namespace tallyhorn {
namespace {

/// Simulates a full disk: this process cannot write beyond `bytes` bytes of any file.  Returns the earlier
/// limit.
rlim_t LimitFileSizes(rlim_t bytes) {
    rlimit limit;
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlim_t before = std::exchange(limit.rlim_cur, bytes);
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    return before;
}

class FullDiskTest : public ExportFixture {};

TEST_F(FullDiskTest, AFailedExportKeepsTheEarlierFile) {
    const std::string name(1'000'000, 'x');
    StoreNamed(name);
    WriteBytes(file_, "old");
    // Writing beyond the limit raises SIGXFSZ, which would end the process.
    auto* const signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlim_t limitBefore = LimitFileSizes(600'000);
    export_.ExportMessages();
    LimitFileSizes(limitBefore);
    std::signal(SIGXFSZ, signalBefore);
    ASSERT_EQ(Boxes.Shown.size(), 2U) << "the question and the failure";
    EXPECT_NE(Boxes.Shown[1].find("The following error occurred"), std::string::npos) << Boxes.Shown[1];
    EXPECT_EQ(ReadBytes(file_), "old");
    EXPECT_TRUE(Exported() == Header + Line(name)) << "the file is replaced as a whole";
}

}  // namespace
}  // namespace tallyhorn
