#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tallyhorn {

/// The schedule of a feed with a fixed rate.  It starts when the object is constructed, and a late text does
/// not delay the texts after it.
class Pace {
public:
    /// `rate` is in texts per second; without a rate all texts are due at once.
    explicit Pace(std::optional<std::uint64_t> rate);

    /// Waits until text `index` is due, counted from 0.  Returns false if the user asks the program to end.
    bool WaitFor(std::uint64_t index);
    /// Returns how many texts are due from `index` on, but at most `most`.
    std::uint64_t Due(std::uint64_t index, std::uint64_t most) const;

private:
    void Sleep(std::uint64_t index);

    const double rate_;
    const std::chrono::steady_clock::time_point start_;
    std::uint64_t due_ = 0;
};

}  // namespace tallyhorn
