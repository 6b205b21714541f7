#include "platform/ProgramLauncher.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyhorn {
namespace {

std::string EnvironmentPath() {
    const char* const path = std::getenv("PATH");
    return path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
}

/// Returns the path of the program in the first folder that has it, or nothing.
std::optional<std::string> FindProgram(const std::string& program, std::string_view folders) {
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        folders.remove_prefix(std::min(folders.size(), folder.size() + 1));
        // Relative folders, and empty ones, would depend on the current folder.
        if (!folder.starts_with('/'))
            continue;
        std::string file = std::string(folder) + '/' + program;
        std::error_code error;
        if (access(file.c_str(), X_OK) == 0 && std::filesystem::is_regular_file(file, error))
            return file;
    }
    return std::nullopt;
}

/// Owns the settings for posix_spawn: the new process has the default signal handlers, no blocked signals, no
/// open files of the console except its output, its own session, and /dev/null as its input.
class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawnattr_init(&Attributes);
        posix_spawn_file_actions_init(&Files);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&Attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&Attributes, &signals);
        posix_spawnattr_setflags(&Attributes,
                                 POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        posix_spawn_file_actions_addopen(&Files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&Files, STDERR_FILENO + 1);
    }
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&Files);
        posix_spawnattr_destroy(&Attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawnattr_t Attributes{};
    posix_spawn_file_actions_t Files{};
};

class LinuxProgramLauncher final : public ProgramLauncher {
public:
    explicit LinuxProgramLauncher(std::string folders) : folders_(std::move(folders)) {}

    bool Start(const std::string& program, std::span<const std::string> arguments) override {
        ReapEnded();
        const std::optional<std::string> file =
            FindProgram(program, folders_.empty() ? EnvironmentPath() : folders_);
        if (!file)
            return false;
        std::vector<std::string> words{program};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        pointers.reserve(words.size() + 1);
        for (std::string& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        const SpawnSettings settings;
        pid_t process = 0;
        if (posix_spawn(&process, file->c_str(), &settings.Files, &settings.Attributes, pointers.data(),
                        environ) != 0)
            return false;
        started_.push_back(process);
        return true;
    }

private:
    /// Calls waitpid for the processes that have ended, since they stay zombies until then.
    void ReapEnded() {
        std::erase_if(started_, [](pid_t process) { return waitpid(process, nullptr, WNOHANG) != 0; });
    }

    const std::string folders_;
    std::vector<pid_t> started_;
};

}  // namespace

std::unique_ptr<ProgramLauncher> MakeProgramLauncher(const std::string& folders) {
    return std::make_unique<LinuxProgramLauncher>(folders);
}

}  // namespace tallyhorn
