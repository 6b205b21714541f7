#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <vector>

#include "platform/ProgramLauncher.h"

namespace tallyhorn {
namespace {

TEST(ReapedProgramsTest, ProgramsObeySignalsAndAStartReapsThoseThatHaveEnded) {
    while (waitpid(-1, nullptr, 0) > 0)
        continue;  // reaps the programs that earlier tests of this process started
    const auto launcher = MakeProgramLauncher("/bin:/usr/bin");
    const std::vector<std::string> endsItself{"-c", "kill -TERM $$"};
    sigset_t blocked{};
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    signal(SIGTERM, SIG_IGN);
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(launcher->Start("sh", endsItself));
        siginfo_t ended{};
        ASSERT_EQ(waitid(P_ALL, 0, &ended, WEXITED | WNOWAIT), 0);
        EXPECT_EQ(ended.si_code, CLD_KILLED) << "only this process blocks and ignores the signal";
        ASSERT_TRUE(launcher->Start("sh", endsItself));
        EXPECT_EQ(waitpid(ended.si_pid, nullptr, WNOHANG), -1) << "the second start reaps the first program";
        EXPECT_EQ(errno, ECHILD);
    }
    signal(SIGTERM, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
}

}  // namespace
}  // namespace tallyhorn
