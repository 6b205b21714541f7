#pragma once

#include <cstdint>
#include <map>

namespace tallyhorn {

/// Owns the numbers that the keys of groups contain, separately for each name.  Consecutive numbers are one
/// range, so the next free number is found in logarithmic time.  If messages are deleted as fast as they
/// arrive, each new alarm is made at the same position, and a search number by number would pass all others.
class KeyNumbers {
public:
    /// Returns the first free number of `name` from `number` on, which is in use from now on.
    std::uint32_t Take(std::uint32_t name, std::uint32_t number);
    /// Frees a number that Take has returned.
    void Release(std::uint32_t name, std::uint32_t number);
    void Clear() { ranges_.clear(); }

private:
    /// Ranges of used numbers, each with its name in the upper half: the first, and the one after the last.
    /// No two ranges touch.
    std::map<std::uint64_t, std::uint64_t> ranges_;
};

}  // namespace tallyhorn
