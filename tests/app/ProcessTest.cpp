#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "tests/fakes/TemporaryFolder.h"
#include "tests/fakes/TestMailslot.h"

namespace tallyhorn {
namespace {

/// The real program, without a screen, in a runtime folder of its own.
class ProcessTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::permissions(runtime_.Path(), std::filesystem::perms::owner_all);
        setenv("XDG_RUNTIME_DIR", runtime_.Path().c_str(), 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        setenv("TALLYHORN_SUMMARY", (folder_ / "summary").c_str(), 1);
        std::ofstream(folder_ / "thlisten.ini") << "[General]\r\nMessageViews=7\r\n";
    }

    static pid_t Spawn(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& errors = "/dev/null") {
        std::vector<char*> words{const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments)
            words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                         0600);
        pid_t process = 0;
        EXPECT_EQ(posix_spawn(&process, program.c_str(), &files, nullptr, words.data(), environ), 0);
        posix_spawn_file_actions_destroy(&files);
        return process;
    }
    static int ExitStatus(pid_t process) {
        int status = 0;
        waitpid(process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    pid_t StartConsole() {
        const pid_t console = Spawn(TALLYHORN_CONSOLE, {"--folder", folder_.Path().string()});
        EXPECT_TRUE(
            Eventually([this] { return std::filesystem::exists(runtime_ / "mailslot/TallyhornEngine"); }));
        return console;
    }
    static std::string Read(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    TemporaryFolder runtime_;
    TemporaryFolder folder_;
};

TEST_F(ProcessTest, ARequestToEndIsTheNormalShutDown) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const pid_t console = StartConsole();
        EXPECT_EQ(ExitStatus(Spawn(TALLYHORN_SEND, {"--demo", "--count", "20", "--seed", "9"})), 0);
        // Two polls, and a machine that has other things to do.
        std::this_thread::sleep_for(std::chrono::milliseconds(2500));
        kill(console, SIGUSR1);  // means nothing, and must not make it deaf
        kill(console, signal);
        EXPECT_EQ(ExitStatus(console), 0) << signal;
        EXPECT_TRUE(Read(folder_ / "summary").starts_with("NetBIOS 20 received, 20 kept"))
            << Read(folder_ / "summary");
        EXPECT_NE(Read(folder_ / "thlisten.ini").find("CPWidth="), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(runtime_ / "mailslot/TallyhornEngine"));
    }
}

TEST_F(ProcessTest, ASecondConsoleOnlySaysSo) {
    const pid_t first = StartConsole();
    TemporaryFolder elsewhere;
    const pid_t second = Spawn(TALLYHORN_CONSOLE, {"--folder", elsewhere.Path().string()});
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(waitpid(second, nullptr, WNOHANG), 0) << "it shows its message";
    kill(second, SIGTERM);
    EXPECT_EQ(ExitStatus(second), 0);
    EXPECT_TRUE(std::filesystem::is_empty(elsewhere.Path())) << "no settings, no filters";
    kill(first, SIGTERM);
    EXPECT_EQ(ExitStatus(first), 0);
}

TEST_F(ProcessTest, BadArgumentsEndWithALineAndStatusTwo) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--folder", "/no/such/folder"}, {"--colour"}, {"--folder"}}) {
        EXPECT_EQ(ExitStatus(Spawn(TALLYHORN_CONSOLE, arguments, folder_ / "errors")), 2);
        EXPECT_TRUE(Read(folder_ / "errors").starts_with("tallyhorn-console: ")) << Read(folder_ / "errors");
    }
    EXPECT_EQ(ExitStatus(Spawn(TALLYHORN_CONSOLE, {"--version"})), 0);
}

}  // namespace
}  // namespace tallyhorn
