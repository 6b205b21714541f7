#include <ctime>
#include <thread>

#include "platform/Clock.h"
#include "platform/LocalTime.h"

namespace tallyhorn {

Clock::TimePoint SystemClock::Now() const {
    return std::chrono::steady_clock::now();
}

std::int64_t SystemClock::LocalSeconds() const {
    using namespace std::chrono;
    const std::tm parts = LocalTime(std::time(nullptr));
    const sys_days day{year(parts.tm_year + 1900) / (parts.tm_mon + 1) / parts.tm_mday};
    const sys_seconds moment = day + hours(parts.tm_hour) + minutes(parts.tm_min) + seconds(parts.tm_sec);
    return moment.time_since_epoch().count();
}

void SystemClock::Sleep(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

}  // namespace tallyhorn
