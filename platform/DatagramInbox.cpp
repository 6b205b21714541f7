#include "platform/DatagramInbox.h"

#include <utility>

namespace tallyhorn {

DatagramInbox::DatagramInbox(std::size_t limit, std::function<void()> wake)
    : wake_(std::move(wake)), queue_(limit) {}

void DatagramInbox::Put(std::span<const std::string_view> datagrams) {
    const std::size_t put = queue_.AppendWhileRoom(datagrams);
    noRoom_.fetch_add(datagrams.size() - put, std::memory_order_relaxed);
    // After the append, see AllowNextWake.
    if (put > 0 && !awake_.exchange(true, std::memory_order_acq_rel))
        wake_();
}

std::optional<std::string_view> DatagramInbox::Next() {
    // Only now: the reader has used what lies there until it asked for the next.
    if (std::exchange(taken_, false))
        queue_.Pop();
    if (!HasWaiting())
        return std::nullopt;
    taken_ = true;
    return queue_.Front();
}

bool DatagramInbox::HasWaiting() {
    return !IsEmpty() || !AllowNextWake();
}

bool DatagramInbox::IsEmpty() const {
    return queue_.Count() == (taken_ ? 1 : 0);
}

/// Lets the pump wake the reader again; false where something waits after all and no wake tells of it.
///
/// Looking once more afterwards is what loses no wake.  Of the pump's exchange and the first one here, one
/// comes before the other.  Where it is the pump's, the pump did not wake, but what it appended before is
/// seen here.  Where it is the reader's, the pump finds the reader at rest and wakes; the second exchange
/// tells, and the reader leaves what waits to that wake, so that never two of them are on their way.
bool DatagramInbox::AllowNextWake() {
    awake_.exchange(false, std::memory_order_acq_rel);
    return IsEmpty() || awake_.exchange(true, std::memory_order_acq_rel);
}

}  // namespace tallyhorn
