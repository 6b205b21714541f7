#include "platform/HelpArchive.h"

#include <chm_lib.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileWriting.h"

namespace tallyhorn {
namespace {

constexpr std::uint64_t LargestFile = 1024ULL * 1024;
constexpr std::size_t LargestWhole = 16ULL * 1024 * 1024;
constexpr rlim_t MostMemory = 256ULL * 1024 * 1024;
constexpr rlim_t MostSeconds = 5;                ///< the most processor time that the child may use
constexpr std::chrono::seconds LongestWait{10};  ///< limit for a child that hangs without using the processor

/// Writes the length of a text and then the text, in the form that TakeText reads.
bool WriteText(int to, std::string_view text) {
    const std::uint64_t size = text.size();
    return WriteAll(to, {reinterpret_cast<const char*>(&size), sizeof size}) && WriteAll(to, text);
}

/// The callback of chm_enumerate: sends the path and the content of one file.
int SendFile(chmFile* archive, chmUnitInfo* unit, void* context) {
    const int to = *static_cast<const int*>(context);
    // Paths that do not begin with a slash are internal to the archive.
    if (unit->path[0] != '/' || unit->length == 0 || unit->length > LargestFile)
        return CHM_ENUMERATOR_CONTINUE;
    std::vector<unsigned char> bytes(unit->length);
    const LONGINT64 size =
        chm_retrieve_object(archive, unit, bytes.data(), 0, static_cast<LONGINT64>(bytes.size()));
    // A help file that was cut lacks some content; none of it is shown, so that no page is missing silently.
    if (size != static_cast<LONGINT64>(bytes.size()))
        return CHM_ENUMERATOR_FAILURE;
    return WriteText(to, unit->path) &&
                   WriteText(to, {reinterpret_cast<const char*>(bytes.data()), bytes.size()})
               ? CHM_ENUMERATOR_CONTINUE
               : CHM_ENUMERATOR_FAILURE;
}

void Limit(__rlimit_resource what, rlim_t most) {
    const rlimit limit{most, most};
    setrlimit(what, &limit);
}

/// Runs in the child process: sends all files to the descriptor `to`, and exits.
[[noreturn]] void SendFiles(const char* file, int to) {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    Limit(RLIMIT_AS, pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + MostMemory);
    Limit(RLIMIT_CPU, MostSeconds);
    Limit(RLIMIT_CORE, 0);
    // Hides error messages of the library.
    if (const int nowhere = open("/dev/null", O_WRONLY); nowhere >= 0)
        dup2(nowhere, STDERR_FILENO);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT})
        signal(fault, SIG_DFL);
    chmFile* const archive = chm_open(file);
    const bool sent =
        archive != nullptr && chm_enumerate(archive, CHM_ENUMERATE_ALL, SendFile, const_cast<int*>(&to)) == 1;
    _exit(sent ? EXIT_SUCCESS : EXIT_FAILURE);
}

/// Waits until `from` is readable.  Returns false if it has not become readable by `deadline`.
bool AwaitBytes(int from, std::chrono::steady_clock::time_point deadline) {
    pollfd wanted{.fd = from, .events = POLLIN, .revents = 0};
    int ready = -1;
    do {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        ready = poll(&wanted, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

/// Reads until the child closes the pipe.  Returns nothing if the child has not closed it within LongestWait,
/// or has sent LargestWhole or more.
std::optional<std::string> ReadAll(int from) {
    const auto deadline = std::chrono::steady_clock::now() + LongestWait;
    std::string all;
    std::vector<char> some(64ULL * 1024);
    while (all.size() < LargestWhole && AwaitBytes(from, deadline)) {
        const ssize_t read = ::read(from, some.data(), some.size());
        if (read == 0)
            return all;
        if (read > 0)
            all.append(some.data(), static_cast<std::size_t>(read));
        else if (errno != EINTR)
            break;
    }
    return std::nullopt;
}

std::optional<std::string_view> TakeText(std::string_view& bytes) {
    std::uint64_t size = 0;
    if (bytes.size() < sizeof size)
        return std::nullopt;
    bytes.copy(reinterpret_cast<char*>(&size), sizeof size);
    bytes.remove_prefix(sizeof size);
    if (size > bytes.size())
        return std::nullopt;
    const std::string_view text = bytes.substr(0, size);
    bytes.remove_prefix(size);
    return text;
}

HelpFiles TakeFiles(std::string_view bytes) {
    HelpFiles files;
    while (auto path = TakeText(bytes)) {
        const auto content = TakeText(bytes);
        // The library in the child may have been compromised by the file, so its output is checked too.
        if (!content || !path->starts_with('/'))
            break;
        files.emplace(path->substr(1), *content);
    }
    return files;
}

}  // namespace

/// The CHM library does not validate what it reads and can crash or loop on a damaged file.  So a child
/// process with limits for memory and time unpacks the file and sends the contents through a pipe.
HelpFiles UnpackHelpFile(const std::filesystem::path& file) {
    std::error_code error;
    int ends[2];
    if (!std::filesystem::is_regular_file(file, error) || pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const FileDescriptor from(ends[0]);
    std::optional<FileDescriptor> to(ends[1]);
    const pid_t child = fork();
    if (child == 0)
        SendFiles(file.c_str(), ends[1]);
    to.reset();
    if (child < 0)
        return {};
    const std::optional<std::string> sent = ReadAll(from.Get());
    // Ends a child that hangs; has no effect if the child has already ended.
    kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    const bool whole = WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
    return whole && sent ? TakeFiles(*sent) : HelpFiles();
}

}  // namespace tallyhorn
