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

/// Owns the datagrams between a pump thread and the reader.  Counts those that it had no room for, and calls
/// `wake` once for all datagrams that arrive until the reader has found the inbox empty.  The pump
/// thread calls Put, the reader's thread all other functions; both may be the same thread.
class DatagramInbox {
public:
    DatagramInbox(std::size_t limit, std::function<void()> wake);

    // For the pump.
    /// Adds the datagrams, wakes the reader if it is not awake, and drops those that exceed the limit.
    void Put(std::span<const std::string_view> datagrams);

    // For the reader; DatagramReceiver describes Next and HasWaiting.
    std::optional<std::string_view> Next();
    bool HasWaiting();
    std::uint64_t NoRoom() const { return noRoom_.load(std::memory_order_relaxed); }

private:
    bool IsEmpty() const;
    bool AllowNextWake();

    const std::function<void()> wake_;
    DatagramQueue queue_;
    bool taken_ = false;  ///< used by the reader only: Next has returned the front of queue_
    std::atomic<std::uint64_t> noRoom_ = 0;
    /// Set while the reader has been woken and has not yet found the inbox empty.
    std::atomic<bool> awake_ = false;
};

}  // namespace tallyhorn
