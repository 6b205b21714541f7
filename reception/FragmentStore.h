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

/// One text on its way in numbered parts.
struct FragmentSlot {
    std::int16_t MessageID = 0;  ///< 0 stands for a free slot
    Clock::TimePoint LastUpdated;
    std::int16_t PartsReceived = 0;
    std::int16_t PartCount = -1;  ///< the last part index that the first part announced; -1 for a free slot
    /// By part index, and only those that came: an announced count costs no memory.
    std::map<std::int16_t, std::string> Parts;
};

/// Owns the parts of texts that came in parts, and puts them together again.
/// Pure but for its own state; called from the user-interface thread.
///
/// A text is complete when exactly as many parts came as the header's last part index says, which is one
/// fewer than a sender sends, and then it is the parts below that index.  The
/// protocol counts so on purpose.
class FragmentStore {
public:
    FragmentStore();

    /// Frees every slot; costs nothing where none was taken since the last time.
    void Reset();
    /// Files one datagram, `*ID-INDEX-LAST-DATA`, each number of digits alone and at most 32767; anything
    /// else is dropped, as is the id 0, which no sender uses.
    void Add(std::string_view datagram, Clock::TimePoint now);
    /// Hands the complete texts to `take` in the order of their slots, and frees those.
    void Collect(const std::function<void(std::string&&)>& take);
    /// Frees the slots that no part came for in the last 30 seconds.
    void Expire(Clock::TimePoint now);

    /// The highest slot index, of slots taken and free.
    std::size_t UpperBound() const { return slots_.size() - 1; }
    std::size_t SlotsTaken() const { return slotById_.size(); }

private:
    FragmentSlot& TakeSlot(std::int16_t id, std::int16_t last, Clock::TimePoint now);
    std::size_t FirstFree();
    void Free(std::size_t index);

    /// Slot 0 is never taken.
    std::vector<FragmentSlot> slots_;
    std::unordered_map<std::int16_t, std::size_t> slotById_;
    /// Slots from `untouched_` on were never taken since the last reset; below it the free ones are in
    /// `freed_`.
    std::size_t untouched_ = 1;
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> freed_;
};

}  // namespace tallyhorn
