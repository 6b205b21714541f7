#include "reception/FragmentStore.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <limits>
#include <optional>

namespace tallyhorn {
namespace {

constexpr std::size_t FirstSize = 1001;
/// The length of a full part 0 without its header.  Of the part of a text that arrives first, whatever its
/// index, the store keeps only this many characters at the end of the datagram.  For a full part 0, this
/// removes exactly the header.
constexpr std::size_t FirstPartLength = 384;
constexpr std::chrono::seconds Lifetime(30);

struct Part {
    std::int16_t ID = 0;
    std::int16_t Index = 0;
    std::int16_t Last = 0;
    std::string_view Data;
};

/// Removes a number and the "-" after it from the front of `text` and returns the number, or nothing if there
/// is none.
std::optional<std::int16_t> TakeNumber(std::string_view& text) {
    // from_chars would accept a sign.
    if (text.empty() || text.front() == '-')
        return std::nullopt;
    std::int16_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (error != std::errc{} || !text.starts_with('-'))
        return std::nullopt;
    text.remove_prefix(1);
    return number;
}

std::optional<Part> ParsePart(std::string_view datagram) {
    if (!datagram.starts_with('*'))
        return std::nullopt;
    datagram.remove_prefix(1);
    const std::optional<std::int16_t> id = TakeNumber(datagram);
    const std::optional<std::int16_t> index = id ? TakeNumber(datagram) : std::nullopt;
    const std::optional<std::int16_t> last = index ? TakeNumber(datagram) : std::nullopt;
    if (!last)
        return std::nullopt;
    return Part{*id, *index, *last, datagram};
}

std::string_view LastCharacters(std::string_view text, std::size_t count) {
    return text.substr(text.size() - std::min(text.size(), count));
}

/// Returns 1.5 times `bound`, with halves rounded to the even neighbour.
std::size_t GrownBound(std::size_t bound) {
    const std::size_t whole = bound * 3 / 2;
    return bound % 2 == 1 && whole % 2 == 1 ? whole + 1 : whole;
}

std::string Join(const PartialText& partial) {
    std::string text;
    for (const auto& [index, part] : partial.Parts) {
        if (index < partial.PartCount)
            text += part;
    }
    return text;
}

}  // namespace

FragmentStore::FragmentStore() : entries_(FirstSize) {}

void FragmentStore::Reset() {
    if (untouched_ == 1)
        return;
    entries_.resize(FirstSize);
    std::fill_n(entries_.begin(), std::min(untouched_, FirstSize), PartialText{});
    indexById_.clear();
    freed_ = {};
    untouched_ = 1;
}

void FragmentStore::Add(std::string_view datagram, Clock::TimePoint now) {
    const std::optional<Part> part = ParsePart(datagram);
    if (!part || part->ID == 0)
        return;
    const auto found = indexById_.find(part->ID);
    const bool first = found == indexById_.end();
    PartialText& partial = first ? TakeEntry(part->ID, part->Last, now) : entries_[found->second];
    partial.LastUpdated = now;
    // A part whose index is greater than PartCount is counted too; only its data is dropped.
    if (partial.PartsReceived < std::numeric_limits<std::int16_t>::max())
        ++partial.PartsReceived;
    if (part->Index <= partial.PartCount)
        partial.Parts[part->Index] = first ? LastCharacters(datagram, FirstPartLength) : part->Data;
}

void FragmentStore::Collect(const std::function<void(std::string&&)>& take) {
    for (std::size_t index = 1; index < untouched_; ++index) {
        if (entries_[index].PartsReceived != entries_[index].PartCount)
            continue;
        take(Join(entries_[index]));
        Free(index);
    }
}

void FragmentStore::Expire(Clock::TimePoint now) {
    for (std::size_t index = 1; index < untouched_; ++index) {
        if (entries_[index].PartCount >= 0 && now - entries_[index].LastUpdated > Lifetime)
            Free(index);
    }
}

PartialText& FragmentStore::TakeEntry(std::int16_t id, std::int16_t last, Clock::TimePoint now) {
    const std::size_t index = FirstFree();
    indexById_[id] = index;
    entries_[index] = {.MessageID = id, .LastUpdated = now, .PartCount = last, .Parts = {}};
    return entries_[index];
}

/// Returns the lowest free entry from 1 on; grows the store if there is none.
std::size_t FragmentStore::FirstFree() {
    if (!freed_.empty()) {
        const std::size_t index = freed_.top();
        freed_.pop();
        return index;
    }
    if (untouched_ == entries_.size())
        entries_.resize(GrownBound(UpperBound()) + 1);
    return untouched_++;
}

void FragmentStore::Free(std::size_t index) {
    indexById_.erase(entries_[index].MessageID);
    entries_[index] = {};
    freed_.push(index);
}

}  // namespace tallyhorn
