#pragma once

#include <chrono>
#include <cstdint>

namespace tallyhorn {

/// Time as the console's rules see it: a monotonic clock, the time on the wall and the one sleep that they
/// use. Called from the user-interface thread; tests hand in a clock of their own.
class Clock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    virtual ~Clock() = default;
    virtual TimePoint Now() const = 0;
    /// Seconds since 1970-01-01 00:00 on the calendar and clock of where the machine stands.
    virtual std::int64_t LocalSeconds() const = 0;
    virtual void Sleep(std::chrono::milliseconds time) = 0;
};

/// The machine's own clock.
class SystemClock final : public Clock {
public:
    TimePoint Now() const override;
    std::int64_t LocalSeconds() const override;
    void Sleep(std::chrono::milliseconds time) override;
};

}  // namespace tallyhorn
