#pragma once

#include "platform/Clock.h"

namespace tallyhorn {

/// A clock that advances only in calls of Advance, Now (by PerLook) and Sleep.
class FakeClock final : public Clock {
public:
    TimePoint Now() const override { return now_ += PerLook; }
    std::int64_t LocalSeconds() const override { return Local; }
    void Sleep(std::chrono::milliseconds time) override {
        now_ += time;
        Slept += time;
    }
    void Advance(std::chrono::milliseconds time) { now_ += time; }

    std::int64_t Local = 1'792'000'000;
    std::chrono::nanoseconds PerLook{0};
    std::chrono::milliseconds Slept{0};

private:
    mutable TimePoint now_{std::chrono::hours(1)};
};

}  // namespace tallyhorn
