#include "platform/CommandLineProgram.h"

#include <fcntl.h>
#include <io.h>

#include <atomic>
#include <csignal>

namespace tallyhorn {
namespace {

std::atomic<bool> endRequested = false;

extern "C" void NoteEndRequest(int signal) {
    endRequested = true;
    // The runtime falls back to the default after each.
    std::signal(signal, NoteEndRequest);
}

}  // namespace

bool ArgumentsAreUtf8() {
    return false;
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
