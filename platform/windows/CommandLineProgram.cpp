#include "platform/CommandLineProgram.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Must be included after windows.h.
#include <shellapi.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string_view>

namespace tallyhorn {
namespace {

std::atomic<bool> endRequested = false;

extern "C" void NoteEndRequest(int signal) {
    endRequested = true;
    // The runtime restores the default handler before each call.
    std::signal(signal, NoteEndRequest);
}

/// Converts UTF-16 to UTF-8.  An unpaired surrogate becomes U+FFFD.
std::string ToUtf8(std::wstring_view text) {
    std::string utf8(3 * text.size(), '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                           utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

bool HasTarget(DWORD stream) {
    const HANDLE handle = GetStdHandle(stream);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

}  // namespace

/// Ignores the arguments of `main`, in which characters outside the code page are lost.
std::vector<std::string> ProgramArguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    const auto free = [](wchar_t** words) { LocalFree(words); };
    const std::unique_ptr<wchar_t*, decltype(free)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                          free);
    std::vector<std::string> arguments;
    for (int i = 1; words != nullptr && i < count; ++i)
        arguments.push_back(ToUtf8(words.get()[i]));
    return arguments;
}

bool AttachOutput(std::FILE* stream) {
    if (HasTarget(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE))
        return true;
    return AttachConsole(ATTACH_PARENT_PROCESS) != 0 && std::freopen("CONOUT$", "w", stream) != nullptr;
}

void ReadStandardInputAsBytes() {
    constexpr int StandardInput = 0;
    _setmode(StandardInput, _O_BINARY);
}

void CatchEndRequests() {
    std::signal(SIGINT, NoteEndRequest);
    std::signal(SIGTERM, NoteEndRequest);
}

bool EndRequested() {
    return endRequested;
}

}  // namespace tallyhorn
