#include "views/messages/KeyNumbers.h"

#include <iterator>

namespace tallyhorn {
namespace {

std::uint64_t Join(std::uint32_t name, std::uint32_t number) {
    return (std::uint64_t{name} << 32U) | number;
}

}  // namespace

std::uint32_t KeyNumbers::Take(std::uint32_t name, std::uint32_t number) {
    std::uint64_t key = Join(name, number);
    const auto next = ranges_.upper_bound(key);
    auto range = next == ranges_.begin() ? ranges_.end() : std::prev(next);
    if (range != ranges_.end() && range->second >= key)
        key = range->second++;
    else
        range = ranges_.emplace_hint(next, key, key + 1);
    if (next != ranges_.end() && next->first == range->second) {
        range->second = next->second;
        ranges_.erase(next);
    }
    return static_cast<std::uint32_t>(key);
}

void KeyNumbers::Release(std::uint32_t name, std::uint32_t number) {
    const std::uint64_t key = Join(name, number);
    const auto range = std::prev(ranges_.upper_bound(key));
    if (key + 1 < range->second)
        ranges_.emplace_hint(std::next(range), key + 1, range->second);
    if (range->first < key)
        range->second = key;
    else
        ranges_.erase(range);
}

}  // namespace tallyhorn
