#pragma once

#include <chrono>
#include <cstdint>

namespace tallyhorn {

/// The port for everything that depends on time: a monotonic clock, the local time, and sleeping.
class Clock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    virtual ~Clock() = default;
    virtual TimePoint Now() const = 0;
    /// Returns the current local time, as seconds since 1970-01-01 00:00:00 local time.
    virtual std::int64_t LocalSeconds() const = 0;
    virtual void Sleep(std::chrono::milliseconds time) = 0;
};

/// The clock of the operating system.
class SystemClock final : public Clock {
public:
    TimePoint Now() const override;
    std::int64_t LocalSeconds() const override;
    void Sleep(std::chrono::milliseconds time) override;
};

}  // namespace tallyhorn
