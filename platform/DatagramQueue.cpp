#include "platform/DatagramQueue.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace tallyhorn {
namespace {

/// The type of the length that precedes each text in a chunk.
using Length = std::uint32_t;

/// The number of unused chunks to keep, so that a steady stream of texts needs no allocation.  Any others,
/// left by a flood, are freed.
constexpr std::size_t SpareChunks = 8;

}  // namespace

DatagramQueue::DatagramQueue(std::size_t limit) : chunkLimit_(std::max<std::size_t>(limit / ChunkSize, 2)) {}

bool DatagramQueue::HasRoom() const {
    const std::lock_guard lock(mutex_);
    return HasRoomLocked();
}

bool DatagramQueue::WaitForRoom() {
    std::unique_lock lock(mutex_);
    room_.wait(lock, [this] { return stopped_ || HasRoomLocked(); });
    return !stopped_;
}

void DatagramQueue::Append(std::span<const std::string_view> texts) {
    const std::lock_guard lock(mutex_);
    for (const std::string_view text : texts)
        AppendOne(text);
    backCount_.fetch_add(texts.size(), std::memory_order_release);
}

std::size_t DatagramQueue::AppendWhileRoom(std::span<const std::string_view> texts) {
    const std::lock_guard lock(mutex_);
    std::size_t appended = 0;
    while (appended < texts.size() && HasRoomLocked())
        AppendOne(texts[appended++]);
    backCount_.fetch_add(appended, std::memory_order_release);
    return appended;
}

void DatagramQueue::Stop() {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    room_.notify_all();
}

std::size_t DatagramQueue::Count() const {
    return frontCount_ + backCount_.load(std::memory_order_acquire);
}

std::optional<std::string_view> DatagramQueue::Front() {
    if (!Advance())
        return std::nullopt;
    return std::string_view(front_[frontChunk_].Data.get() + frontOffset_ + sizeof(Length), FrontSize());
}

void DatagramQueue::Pop() {
    frontOffset_ += sizeof(Length) + FrontSize();
    --frontCount_;
    // A chunk is released as soon as it has been read, so that the appending thread never waits for it.
    if (frontOffset_ == front_[frontChunk_].Used)
        ReleaseFront();
}

std::size_t DatagramQueue::NextSize() {
    return Front().value_or(std::string_view()).size();
}

bool DatagramQueue::Read(std::span<char> buffer, std::size_t& read) {
    const std::optional<std::string_view> text = Front();
    if (!text || text->size() > buffer.size())
        return false;
    std::copy(text->begin(), text->end(), buffer.data());
    read = text->size();
    Pop();
    return true;
}

void DatagramQueue::AppendOne(std::string_view text) {
    const std::size_t needed = sizeof(Length) + text.size();
    if (back_.empty() || ChunkSize - back_.back().Used < needed)
        back_.push_back(TakeChunk());
    Chunk& chunk = back_.back();
    const auto length = static_cast<Length>(text.size());
    std::memcpy(chunk.Data.get() + chunk.Used, &length, sizeof length);
    std::copy(text.begin(), text.end(), chunk.Data.get() + chunk.Used + sizeof length);
    chunk.Used += needed;
}

DatagramQueue::Chunk DatagramQueue::TakeChunk() {
    ++chunksInUse_;
    if (spare_.empty())
        return {MakeChunkMemory(ChunkSize), 0};
    Chunk chunk = std::move(spare_.back());
    spare_.pop_back();
    chunk.Used = 0;
    return chunk;
}

/// Makes the oldest text the first of front_.  Returns false if the queue is empty.
bool DatagramQueue::Advance() {
    if (frontCount_ > 0)
        return true;
    if (backCount_.load(std::memory_order_acquire) == 0)
        return false;
    const std::lock_guard lock(mutex_);
    front_.clear();
    front_.swap(back_);
    frontChunk_ = 0;
    frontOffset_ = 0;
    frontCount_ = backCount_.exchange(0, std::memory_order_relaxed);
    return true;
}

void DatagramQueue::ReleaseFront() {
    const std::lock_guard lock(mutex_);
    Chunk& done = front_[frontChunk_];
    if (spare_.size() < SpareChunks)
        spare_.push_back(std::move(done));
    else
        done.Data.reset();
    ++frontChunk_;
    frontOffset_ = 0;
    --chunksInUse_;
    room_.notify_one();
}

std::size_t DatagramQueue::FrontSize() const {
    Length length = 0;
    std::memcpy(&length, front_[frontChunk_].Data.get() + frontOffset_, sizeof length);
    return length;
}

}  // namespace tallyhorn
