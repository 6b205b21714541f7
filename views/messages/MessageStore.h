#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "views/messages/ChunkedArray.h"

namespace tallyhorn {

using Slot = std::int32_t;

/// The full texts of one channel's kept notifications, indexed by slot, with the queue of slots that
/// deletions freed and the count of notifications held.  User-interface thread only.
class MessageStore {
public:
    /// Slots 0 to `upperBound` stand empty at first.
    explicit MessageStore(Slot upperBound);

    std::int32_t MessageCount() const { return messageCount_; }
    Slot UpperBound() const { return static_cast<Slot>(texts_.Size()) - 1; }
    /// Empty for a freed slot and for one outside the store.
    const std::string& Text(Slot slot) const;

    /// The slot that has been free for longest, taken out of the queue.
    std::optional<Slot> TakeFreeSlot();
    /// A new last slot.
    Slot Grow();
    /// Slots up to `upperBound`, the new ones empty.
    void GrowTo(Slot upperBound) { texts_.GrowTo(static_cast<std::size_t>(upperBound) + 1); }
    /// Adds one to the count; `slot` lies within the store.
    void Put(Slot slot, std::string text);
    /// Empties the slot and puts it at the end of the queue of free ones.
    void Free(Slot slot);
    /// Forgets everything; slots 0 to `upperBound` stand empty.
    void Clear(Slot upperBound);

private:
    bool Holds(Slot slot) const { return slot >= 0 && static_cast<std::size_t>(slot) < texts_.Size(); }

    ChunkedArray<std::string> texts_;
    std::deque<Slot> freeSlots_;
    std::int32_t messageCount_ = 0;
};

}  // namespace tallyhorn
