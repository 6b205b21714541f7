#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>

#include "platform/ProgramLauncher.h"

namespace tallyhorn {
namespace {

TEST(ReapedProgramsTest, AStartReapsTheProgramsThatHaveEnded) {
    while (waitpid(-1, nullptr, 0) > 0)
        continue;  // reaps the programs that earlier tests of this process started
    const auto launcher = MakeProgramLauncher("/bin:/usr/bin");
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(launcher->Start("true", {}));
        siginfo_t ended{};
        ASSERT_EQ(waitid(P_ALL, 0, &ended, WEXITED | WNOWAIT), 0);
        ASSERT_TRUE(launcher->Start("true", {}));
        EXPECT_EQ(waitpid(ended.si_pid, nullptr, WNOHANG), -1) << "the second start reaps the first program";
        EXPECT_EQ(errno, ECHILD);
    }
}

}  // namespace
}  // namespace tallyhorn
