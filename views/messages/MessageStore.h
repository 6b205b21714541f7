#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "views/messages/ChunkedArray.h"
#include "views/messages/Slot.h"
#include "views/messages/StoreObserver.h"

namespace tallyhorn {

/// Owns the full texts of one channel's messages by slot, the queue of slots that deletions freed, and the
/// number of messages.
class MessageStore {
public:
    /// Slots 0 to `upperBound` exist and are empty at first.
    explicit MessageStore(Slot upperBound);

    /// Sets the only observer, which must outlive the store unless a call with nullptr removes it.
    /// Returns the previous one.
    StoreObserver* SetObserver(StoreObserver* observer) { return std::exchange(observer_, observer); }

    std::int32_t MessageCount() const { return messageCount_; }
    Slot UpperBound() const { return static_cast<Slot>(texts_.Size()) - 1; }
    /// Returns an empty text for a freed slot and for one outside the store.
    const std::string& Text(Slot slot) const;

    /// Takes the slot that was freed first out of the queue; returns nothing if the queue is empty.
    std::optional<Slot> TakeFreeSlot();
    /// Adds a slot at the end and returns it.
    Slot Grow();
    /// Makes `upperBound` the last slot if the store is smaller; new slots are empty.
    void GrowTo(Slot upperBound) { texts_.GrowTo(static_cast<std::size_t>(upperBound) + 1); }
    /// Stores the text of a new message and counts it.  `slot` must be empty and within the store.
    void Put(Slot slot, std::string text);
    /// Adds the slots from `first` on that lie between those of `taken`, which is in ascending order, to the
    /// queue.  To be called after messages were put into slots that neither TakeFreeSlot nor Grow returned.
    void QueueGaps(Slot first, std::span<const Slot> taken);
    /// Empties the slot and adds it to the end of the queue; does nothing for one outside the store.
    void Free(Slot slot);
    /// Removes all messages; slots 0 to `upperBound` remain, empty and not in the queue.
    void Clear(Slot upperBound);

private:
    bool Holds(Slot slot) const { return slot >= 0 && static_cast<std::size_t>(slot) < texts_.Size(); }

    ChunkedArray<std::string> texts_;
    std::deque<Slot> freeSlots_;
    std::int32_t messageCount_ = 0;
    StoreObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
