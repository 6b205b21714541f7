#include <thread>

#include "platform/Clock.h"

namespace tallyhorn {

Clock::TimePoint SystemClock::Now() const {
    return std::chrono::steady_clock::now();
}

void SystemClock::Sleep(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

}  // namespace tallyhorn
