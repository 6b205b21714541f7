#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tallyhorn {

/// Says when the next texts of a feed are due, by a schedule that late ones do not shift.
/// Owns the schedule, which starts with it; for one thread.
class Pace {
public:
    /// `rate` in texts a second; without one all are due at once.
    explicit Pace(std::optional<std::uint64_t> rate);

    /// Waits until text number `index`, from 0, is due; false when asked to end meanwhile.
    bool WaitFor(std::uint64_t index);
    /// How many texts from `index` on, `most` at most, need no wait.
    std::uint64_t Due(std::uint64_t index, std::uint64_t most) const;

private:
    void Sleep(std::uint64_t index);

    const double rate_;
    const std::chrono::steady_clock::time_point start_;
    std::uint64_t due_ = 0;
};

}  // namespace tallyhorn
