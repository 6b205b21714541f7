#include "platform/CommandLineProgram.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Needs the one above.
#include <shellapi.h>

#include <atomic>
#include <csignal>
#include <cstdio>

#include "platform/PathText.h"

namespace tallyhorn {
namespace {

std::atomic<bool> endRequested = false;

extern "C" void NoteEndRequest(int signal) {
    endRequested = true;
    // The runtime falls back to the default after each.
    std::signal(signal, NoteEndRequest);
}

/// Where it leads somewhere.
bool IsOpen(DWORD stream) {
    const HANDLE handle = GetStdHandle(stream);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

}  // namespace

/// Those of `main` lack what the code page lacks.
std::vector<std::string> ProgramArguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; words != nullptr && i < count; ++i)
        arguments.push_back(Utf8FromPath(words[i]));
    LocalFree(words);
    return arguments;
}

bool OutputIsSeen() {
    const bool output = IsOpen(STD_OUTPUT_HANDLE);
    const bool errors = IsOpen(STD_ERROR_HANDLE);
    if (output && errors)
        return true;
    if (AttachConsole(ATTACH_PARENT_PROCESS) == 0)
        return false;
    return (output || std::freopen("CONOUT$", "w", stdout) != nullptr) &&
           (errors || std::freopen("CONOUT$", "w", stderr) != nullptr);
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
