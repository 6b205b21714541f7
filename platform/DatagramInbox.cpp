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
    // Not removed earlier, because the reader was using the view that the last call returned.
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
/// The order of the pump's exchange in Put and the first exchange here decides.  If the pump's is first, the
/// pump did not call `wake`, but IsEmpty sees what it appended before its exchange; the second exchange
/// returns false, and the reader reads on.  If the reader's is first, the pump finds awake_ cleared and calls
/// `wake`; the second exchange returns true, and the reader waits for that wake.  So no wake is lost, and
/// there are never two at once.
bool DatagramInbox::AllowNextWake() {
    awake_.exchange(false, std::memory_order_acq_rel);
    return IsEmpty() || awake_.exchange(true, std::memory_order_acq_rel);
}

}  // namespace tallyhorn
