#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace tallyhorn {

/// A growable array in chunks: elements never move, and growing neither copies them nor needs memory for two
/// copies.  Owns its elements.
template <typename Element, std::size_t ChunkSize = 1024>
class ChunkedArray {
public:
    std::size_t Size() const { return size_; }
    Element& operator[](std::size_t index) { return (*chunks_[index / ChunkSize])[index % ChunkSize]; }
    const Element& operator[](std::size_t index) const {
        return (*chunks_[index / ChunkSize])[index % ChunkSize];
    }

    /// Adds elements until the array has at least `size`.
    void GrowTo(std::size_t size) {
        while (chunks_.size() * ChunkSize < size)
            chunks_.push_back(std::make_unique<Chunk>());
        if (size > size_)
            size_ = size;
    }

    void Clear() {
        chunks_.clear();
        chunks_.shrink_to_fit();
        size_ = 0;
    }

private:
    using Chunk = std::array<Element, ChunkSize>;
    std::vector<std::unique_ptr<Chunk>> chunks_;
    std::size_t size_ = 0;
};

}  // namespace tallyhorn
