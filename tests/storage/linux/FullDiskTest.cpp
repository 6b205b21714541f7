#include <sys/resource.h>

#include <csignal>

#include "tests/storage/ExportFixture.h"

namespace tallyhorn {
namespace {

using FullDiskTest = ExportFixture;

TEST_F(FullDiskTest, AFailedExportKeepsTheEarlierFile) {
    const std::string name(1'000'000, 'x');
    StoreNamed(name);
    WriteBytes(file_, "old");
    // Simulates a full disk by a limit on the size of files.  Writing beyond the limit raises SIGXFSZ, which
    // would end the process.
    auto* const signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit full{600'000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    export_.ExportMessages(Display.Page);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signalBefore);
    ASSERT_EQ(Boxes.Shown.size(), 2U) << "the question and the failure";
    EXPECT_NE(Boxes.Shown[1].find("The following error occurred"), std::string::npos) << Boxes.Shown[1];
    EXPECT_EQ(ReadBytes(file_), "old");
    EXPECT_TRUE(Exported() == Header + Line(name)) << "the file is replaced as a whole";
}

}  // namespace
}  // namespace tallyhorn
