#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Clock.h"

namespace tallyhorn {

/// A text of which some parts have arrived.
struct PartialText {
    std::int16_t MessageID = 0;  ///< 0 in a free entry
    Clock::TimePoint LastUpdated;
    std::int16_t PartsReceived = 0;
    std::int16_t PartCount = -1;  ///< the last index, from the part that arrived first; -1 in a free entry
    /// The parts that arrived, by index; a large PartCount therefore costs no memory.
    std::map<std::int16_t, std::string> Parts;
};

/// Owns the parts of texts that arrive in parts, and joins each text once it is complete.
///
/// compatibility: a text is complete when the number of its parts that have arrived equals its last part
/// index, and it then consists of the parts below that index, as existing senders expect.  A sender sends one
/// part more than that:
///
///     store.Add("*7-0-2-one ", now);  // part 0 of the parts 0 to 2; a short first part keeps its header
///     store.Add("*7-1-2-two", now);   // two parts have arrived, and the last index is 2: complete
///     store.Collect(take);            // take("*7-0-2-one two")
///     store.Add("*7-2-2-three", now); // begins another text 7, which stays incomplete
///
/// If the third part arrives before Collect, the entry has three parts instead of two, and Collect passes no
/// text.
class FragmentStore {
public:
    FragmentStore();

    /// Frees every entry.  Returns at once if no entry was taken since the last call.
    void Reset();
    /// Adds one datagram of the form `*ID-INDEX-LAST-DATA`, whose numbers consist of digits only and are at
    /// most 32767.  Drops any other datagram, and one with the id 0, which no sender uses.
    void Add(std::string_view datagram, Clock::TimePoint now);
    /// Passes each complete text to `take`, in the order of the entries, and frees its entry.
    void Collect(const std::function<void(std::string&&)>& take);
    /// Frees each entry to which no part has been added for more than 30 seconds.
    void Expire(Clock::TimePoint now);

    /// Returns the highest index of an entry, taken or free.
    std::size_t UpperBound() const { return entries_.size() - 1; }

private:
    PartialText& TakeEntry(std::int16_t id, std::int16_t last, Clock::TimePoint now);
    std::size_t FirstFree();
    void Free(std::size_t index);

    /// Entry 0 is never taken.
    std::vector<PartialText> entries_;
    std::unordered_map<std::int16_t, std::size_t> indexById_;
    /// The entries from `untouched_` on have not been taken since the last Reset.  The free entries with
    /// lower indexes are in `freed_`.
    std::size_t untouched_ = 1;
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> freed_;
};

}  // namespace tallyhorn
