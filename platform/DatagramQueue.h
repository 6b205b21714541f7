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

/// The texts that a back end has taken out of the system and that nobody has read yet, in large chunks of
/// memory so that a text costs no allocation of its own.
/// One thread appends and one reads, which may be the same one; Stop may come from any.
class DatagramQueue {
public:
    static constexpr std::size_t ChunkSize = std::size_t{2} << 20U;
    static constexpr std::size_t DefaultLimit = std::size_t{256} << 20U;
    static constexpr std::size_t LargestText = 65536;

    /// `limit`, in bytes, holds to within two chunks: it is tested before an append, never in the middle.
    explicit DatagramQueue(std::size_t limit = DefaultLimit);

    // The appending side.
    bool HasRoom() const;
    /// Blocks until there is room; false once Stop was called.
    bool WaitForRoom();
    /// Every text at most LargestText long.
    void Append(std::span<const std::string_view> texts);
    /// Appends as many of `texts`, from the first on, as there is room for, and tells how many.
    std::size_t AppendWhileRoom(std::span<const std::string_view> texts);
    void Stop();

    // The reading side.
    std::size_t Count() const;
    /// The oldest text where it lies, which stays there, valid until Pop or Read.
    std::optional<std::string_view> Front();
    /// Takes the oldest text away; one has to wait.
    void Pop();
    /// Size of the oldest text, 0 where none waits.
    std::size_t NextSize();
    /// False, and the text stays, where none waits or `buffer` is too short for it.
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

    // The reader's own.
    std::vector<Chunk> front_;
    std::size_t frontChunk_ = 0;
    std::size_t frontOffset_ = 0;
    std::size_t frontCount_ = 0;

    std::atomic<std::size_t> backCount_ = 0;
    mutable std::mutex mutex_;  // guards all below, and changes of backCount_
    std::condition_variable room_;
    std::vector<Chunk> back_;
    std::vector<Chunk> spare_;
    std::size_t chunksInUse_ = 0;
    bool stopped_ = false;
};

}  // namespace tallyhorn
