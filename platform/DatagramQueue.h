#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/ChunkMemory.h"

namespace tallyhorn {

/// Owns the texts that a pump thread has received and the reader has not yet read, in the order of their
/// arrival.  They are stored in large chunks, so that a text needs no allocation.  One thread appends and one
/// thread reads; they may be the same thread.  Any thread may call Stop.
class DatagramQueue {
public:
    static constexpr std::size_t ChunkSize = std::size_t{2} << 20U;
    static constexpr std::size_t DefaultLimit = std::size_t{256} << 20U;
    static constexpr std::size_t LargestText = 65536;

    /// `limit` is in bytes.  The texts may exceed it by up to two chunks, since Append adds a batch without
    /// checking the limit.
    explicit DatagramQueue(std::size_t limit = DefaultLimit);

    // Called by the appending thread.
    bool HasRoom() const;
    /// Waits until there is room.  Returns false if Stop has been called.
    bool WaitForRoom();
    /// Appends all texts, regardless of the limit.  No text may be longer than LargestText.
    void Append(std::span<const std::string_view> texts);
    /// Appends texts from the front of `texts` while there is room, and returns their number.
    std::size_t AppendWhileRoom(std::span<const std::string_view> texts);
    void Stop();

    // Called by the reading thread.
    std::size_t Count() const;
    /// Returns the oldest text without removing it.  The view is valid until the next call of Pop or Read.
    std::optional<std::string_view> Front();
    /// Removes the oldest text.  The queue must not be empty, and Front or NextSize must have been called
    /// since the previous Pop.
    void Pop();
    /// Returns the size of the oldest text, or 0 if the queue is empty.
    std::size_t NextSize();
    /// Moves the oldest text to `buffer` and sets `read` to its size.  Returns false and leaves the queue
    /// unchanged if it is empty or `buffer` is too small.
    bool Read(std::span<char> buffer, std::size_t& read);

private:
    struct Chunk {
        ChunkMemory Data;
        std::size_t Used = 0;
    };

    bool HasRoomLocked() const { return chunksInUse_ < chunkLimit_; }
    void AppendOne(std::string_view text);
    Chunk TakeChunk();
    bool Advance();
    void ReleaseFront();
    std::size_t FrontSize() const;

    const std::size_t chunkLimit_;

    // Used by the reading thread only.
    std::vector<Chunk> front_;
    std::size_t frontChunk_ = 0;
    std::size_t frontOffset_ = 0;
    std::size_t frontCount_ = 0;

    std::atomic<std::size_t> backCount_ = 0;
    mutable std::mutex mutex_;  // guards all members below, and changes of backCount_
    std::condition_variable room_;
    std::vector<Chunk> back_;
    std::vector<Chunk> spare_;
    std::size_t chunksInUse_ = 0;
    bool stopped_ = false;
};

}  // namespace tallyhorn
