#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "platform/DatagramQueue.h"

namespace tallyhorn {

/// Owns the datagrams that a pump thread has taken from a socket, counts those it had no room for, and wakes
/// the reader once for all that comes while it has not looked.
/// One thread puts in and one takes out, which may be the same one.
class DatagramInbox {
public:
    DatagramInbox(std::size_t limit, std::function<void()> wake);

    // The pump's side.
    void Put(std::span<const std::string_view> datagrams);

    // The reader's side; as DatagramReceiver has it.
    std::optional<std::string_view> Next();
    bool HasWaiting();
    std::uint64_t NoRoom() const { return noRoom_.load(std::memory_order_relaxed); }

private:
    bool IsEmpty() const;
    bool AllowNextWake();

    const std::function<void()> wake_;
    DatagramQueue queue_;
    bool taken_ = false;  ///< the reader's own: the queue's first is the one that Next gave last
    std::atomic<std::uint64_t> noRoom_ = 0;
    /// Whether the reader has been woken and not yet found nothing.
    std::atomic<bool> awake_ = false;
};

}  // namespace tallyhorn
