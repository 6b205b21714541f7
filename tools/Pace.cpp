#include "tools/Pace.h"

#include <algorithm>
#include <thread>

#include "platform/CommandLineProgram.h"

namespace tallyhorn {

Pace::Pace(std::optional<std::uint64_t> rate)
    : rate_(static_cast<double>(rate.value_or(0))), start_(std::chrono::steady_clock::now()) {}

bool Pace::WaitFor(std::uint64_t index) {
    if (rate_ > 0 && index >= due_)
        Sleep(index);
    return !EndRequested();
}

std::uint64_t Pace::Due(std::uint64_t index, std::uint64_t most) const {
    return rate_ > 0 ? std::min(due_ - std::min(index, due_), most) : most;
}

/// Sleeps until text `index` is due, in steps of at least a millisecond.  At high rates several texts become
/// due in one step, and Due counts them.
void Pace::Sleep(std::uint64_t index) {
    using namespace std::chrono_literals;
    const std::chrono::duration<double> offset(static_cast<double>(index) / rate_);
    const auto deadline = start_ + std::chrono::duration_cast<std::chrono::nanoseconds>(offset);
    auto now = std::chrono::steady_clock::now();
    while (now < deadline && !EndRequested()) {
        std::this_thread::sleep_for(std::clamp<std::chrono::nanoseconds>(deadline - now, 1ms, 50ms));
        now = std::chrono::steady_clock::now();
    }
    const std::chrono::duration<double> elapsed = now - start_;
    due_ = static_cast<std::uint64_t>(elapsed.count() * rate_) + 1;
}

}  // namespace tallyhorn
