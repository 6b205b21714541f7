#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {

/// Runs the real console as a process, without a screen and with its own runtime folder.
class ProcessTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::permissions(runtime_.Path(), std::filesystem::perms::owner_all);
        setenv("XDG_RUNTIME_DIR", runtime_.Path().c_str(), 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        setenv("TALLYHORN_SUMMARY", (folder_ / "summary").c_str(), 1);
        WriteBytes(folder_ / "thlisten.ini", "[General]\r\nMessageViews=7\r\n");
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

    TemporaryFolder runtime_, folder_;
};

}  // namespace tallyhorn
