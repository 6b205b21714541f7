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

/// Owns the datagrams that a pump thread has received and the reader has not yet read.  Counts those that
/// were dropped for lack of room.  Calls `wake` for the first datagram, and not again until the reader has
/// found the inbox empty.  The pump thread calls Put, the reader's thread all other functions; both may be
/// the same thread.
class DatagramInbox {
public:
    DatagramInbox(std::size_t limit, std::function<void()> wake);

    // Called by the pump thread.
    /// Adds the datagrams that fit within the limit, drops the others, and wakes the reader if it is not
    /// awake.
    void Put(std::span<const std::string_view> datagrams);

    // Called by the reader; DatagramReceiver describes Next and HasWaiting.
    std::optional<std::string_view> Next();
    bool HasWaiting();
    std::uint64_t NoRoom() const { return noRoom_.load(std::memory_order_relaxed); }

private:
    bool IsEmpty() const;
    bool AllowNextWake();

    const std::function<void()> wake_;
    DatagramQueue queue_;
    bool taken_ = false;  ///< whether Next has returned the front of queue_; used by the reader only
    std::atomic<std::uint64_t> noRoom_ = 0;
    /// True from a wake until the reader finds the inbox empty.
    std::atomic<bool> awake_ = false;
};

}  // namespace tallyhorn
