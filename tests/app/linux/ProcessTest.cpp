#include "platform/FolderLock.h"
#include "tests/app/linux/ConsoleProcess.h"

namespace tallyhorn {
namespace {

TEST_F(ProcessTest, ARequestToEndIsTheNormalShutDown) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const pid_t console = StartConsole();
        EXPECT_EQ(ExitStatus(Spawn(TALLYHORN_SEND, {"--demo", "--count", "20", "--seed", "9"})), 0);
        // Long enough for two polls, even on a busy machine.
        std::this_thread::sleep_for(std::chrono::milliseconds(2500));
        kill(console, SIGUSR1);  // has no effect; the console must still obey the next signal
        kill(console, signal);
        EXPECT_EQ(ExitStatus(console), 0) << signal;
        EXPECT_EQ(ReadBytes(folder_ / "summary").find("NetBIOS 20 received, 20 kept"), 0U);
        EXPECT_NE(ReadBytes(folder_ / "thlisten.ini").find("CPWidth="), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(runtime_ / "mailslot/TallyhornEngine"));
    }
}

TEST_F(ProcessTest, ASecondConsoleOnlySaysSo) {
    const pid_t first = StartConsole();
    TemporaryFolder elsewhere;
    const pid_t second = Spawn(TALLYHORN_CONSOLE, {"--folder", elsewhere.Path().string()});
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(waitpid(second, nullptr, WNOHANG), 0) << "it still shows its message";
    kill(second, SIGTERM);
    EXPECT_EQ(ExitStatus(second), 0);
    EXPECT_TRUE(std::filesystem::is_empty(elsewhere.Path())) << "it writes no settings and no filters";
    kill(first, SIGTERM);
    EXPECT_EQ(ExitStatus(first), 0);
}

TEST_F(ProcessTest, AKilledConsoleLeavesTheFolderFree) {
    const pid_t first = StartConsole();
    const auto isRefused = [this] {
        FolderLock lock(folder_.Path());
        return !lock.Acquire();
    };
    EXPECT_TRUE(Eventually(isRefused));
    kill(first, SIGKILL);
    ExitStatus(first);
    EXPECT_FALSE(isRefused());
    const pid_t second = StartConsole();
    EXPECT_TRUE(Eventually(isRefused)) << "the lock file that was left is no obstacle";
    kill(second, SIGTERM);
    EXPECT_EQ(ExitStatus(second), 0);
}

TEST_F(ProcessTest, BadArgumentsEndWithALineAndStatusTwo) {
    EXPECT_EQ(ExitStatus(Spawn(TALLYHORN_CONSOLE, {"--colour"}, folder_ / "errors")), 2);
    EXPECT_EQ(ReadBytes(folder_ / "errors").find("tallyhorn-console: "), 0U) << ReadBytes(folder_ / "errors");
    EXPECT_EQ(ExitStatus(Spawn(TALLYHORN_CONSOLE, {"--version"})), 0);
}

}  // namespace
}  // namespace tallyhorn
