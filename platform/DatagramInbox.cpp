#include "platform/DatagramInbox.h"

#include <utility>

namespace tallyhorn {

DatagramInbox::DatagramInbox(std::size_t limit, std::function<void()> wake)
    : wake_(std::move(wake)), queue_(limit) {}

void DatagramInbox::Put(std::span<const std::string_view> datagrams) {
    const std::size_t put = queue_.AppendWhileRoom(datagrams);
    noRoom_.fetch_add(datagrams.size() - put, std::memory_order_relaxed);
    // Must follow the append; AllowNextWake explains why.
    if (put > 0 && !awake_.exchange(true, std::memory_order_acq_rel))
        wake_();
}

std::optional<std::string_view> DatagramInbox::Next() {
    // The text that the previous call returned is removed only now, because the reader was using it until
    // now.
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

/// Called by the reader when the queue is empty.  Returns true if the pump will wake the reader for the next
/// datagram, and false if the reader must read on, because a datagram has arrived without a wake.
///
/// Put appends datagrams and then sets awake_; this function clears awake_ and then checks the queue.  So no
/// wake is lost: if Put found awake_ still set, and did not call `wake`, IsEmpty sees its datagrams.  If the
/// queue is not empty, the second exchange shows whether Put has set awake_ meanwhile.  If it has, it calls
/// `wake`, and the reader waits for that; otherwise the reader reads on, and Put does not call `wake`.  So
/// two wakes are never pending at once.
bool DatagramInbox::AllowNextWake() {
    awake_.exchange(false, std::memory_order_acq_rel);
    return IsEmpty() || awake_.exchange(true, std::memory_order_acq_rel);
}

}  // namespace tallyhorn
