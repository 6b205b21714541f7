#include "platform/ProgramLauncher.h"

#include <windows.h>

// Must be included after windows.h.
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyhorn {
namespace {

constexpr DWORD ElevationRequired = 740;  // ERROR_ELEVATION_REQUIRED, which some headers lack

std::string EnvironmentPath() {
    std::vector<char> value(GetEnvironmentVariableA("PATH", nullptr, 0));
    const DWORD length =
        value.empty() ? 0 : GetEnvironmentVariableA("PATH", value.data(), static_cast<DWORD>(value.size()));
    return length < value.size() ? std::string(value.data(), length) : std::string();
}

/// Returns the folders without the relative ones, which would depend on the current folder.
std::string AbsoluteFolders(std::string_view folders) {
    std::string absolute;
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(';'));
        folders.remove_prefix(std::min(folders.size(), folder.size() + 1));
        const bool hasDrive =
            folder.size() > 2 && folder[1] == ':' && (folder[2] == '\\' || folder[2] == '/');
        const bool fromRoot = folder.starts_with('\\') || folder.starts_with('/');
        if (hasDrive || fromRoot)
            absolute.append(folder) += ';';
    }
    return absolute;
}

/// Returns the path of the program in the first folder that has it, or an empty text.
std::string FindProgram(const std::string& program, const std::string& folders) {
    std::array<char, MAX_PATH> found{};
    const DWORD length = folders.empty()
                             ? 0
                             : SearchPathA(folders.c_str(), program.c_str(), ".exe",
                                           static_cast<DWORD>(found.size()), found.data(), nullptr);
    return length < found.size() ? std::string(found.data(), length) : std::string();
}

/// Appends one argument in quotes, so that programs which split their command line by the rules of Windows
/// read it unchanged: backslashes are special, and must be doubled, only before a quote.
void AppendQuoted(std::string& line, std::string_view word) {
    line += '"';
    std::size_t backslashes = 0;
    for (const char character : word) {
        if (character == '\\') {
            ++backslashes;
            continue;
        }
        line.append(character == '"' ? backslashes * 2 + 1 : backslashes, '\\');
        backslashes = 0;
        line += character;
    }
    line.append(backslashes * 2, '\\');
    line += '"';
}

/// Starts a program that requires administrator rights; Windows asks the user for them.
bool StartElevated(const std::string& file, const std::string& arguments) {
    SHELLEXECUTEINFOA start{};
    start.cbSize = sizeof start;
    start.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    start.lpFile = file.c_str();
    start.lpParameters = arguments.c_str();
    start.nShow = SW_SHOWNORMAL;
    return ShellExecuteExA(&start) != 0;
}

/// Returns the end of a command line: the arguments in quotes, each up to its first NUL.
std::string JoinQuoted(std::span<const std::string> arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        line += ' ';
        AppendQuoted(line, std::string_view(argument).substr(0, argument.find('\0')));
    }
    return line;
}

class WindowsProgramLauncher final : public ProgramLauncher {
public:
    explicit WindowsProgramLauncher(std::string folders) : folders_(std::move(folders)) {}

    bool Start(const std::string& program, std::span<const std::string> arguments) override {
        const std::string file =
            FindProgram(program, AbsoluteFolders(folders_.empty() ? EnvironmentPath() : folders_));
        if (file.empty())
            return false;
        const std::string words = JoinQuoted(arguments);
        std::string line;
        AppendQuoted(line, file);
        line += words;
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = SW_SHOWNORMAL;
        PROCESS_INFORMATION process{};
        if (CreateProcessA(file.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                           &process) == 0)
            return GetLastError() == ElevationRequired && StartElevated(file, words);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return true;
    }

private:
    const std::string folders_;
};

}  // namespace

std::unique_ptr<ProgramLauncher> MakeProgramLauncher(const std::string& folders) {
    return std::make_unique<WindowsProgramLauncher>(folders);
}

}  // namespace tallyhorn
