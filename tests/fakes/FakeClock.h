#pragma once

#include <chrono>

#include "platform/Clock.h"

namespace tallyhorn {

/// A clock that stands still until a test moves it; sleeping moves it too.
class FakeClock final : public Clock {
public:
    TimePoint Now() const override { return now_; }
    void Sleep(std::chrono::milliseconds time) override { now_ += time; }
    void Advance(std::chrono::milliseconds time) { now_ += time; }

private:
    TimePoint now_{std::chrono::hours(1)};
};

}  // namespace tallyhorn
