#include "platform/CommandLineProgram.h"

#include <algorithm>
#include <atomic>
#include <csignal>

namespace tallyhorn {
namespace {

std::atomic<bool> endRequested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may access only lock-free atomics");

extern "C" void NoteEndRequest(int /*signal*/) {
    endRequested = true;
}

}  // namespace

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

bool AttachOutput(std::FILE* /*stream*/) {
    return true;
}

void ReadStandardInputAsBytes() {}

void CatchEndRequests() {
    struct sigaction action {};
    action.sa_handler = NoteEndRequest;  // without SA_RESTART, so that a blocked write fails with EINTR
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool EndRequested() {
    return endRequested;
}

}  // namespace tallyhorn
