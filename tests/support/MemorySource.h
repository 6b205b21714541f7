#pragma once

#include <algorithm>
#include <string_view>

#include "platform/ByteSource.h"

namespace tallyhorn {

/// Reads bytes in memory, which must outlive the source, in pieces of at most `pieceSize` bytes.
class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::string_view bytes, std::size_t pieceSize = std::string_view::npos)
        : left_(bytes), pieceSize_(pieceSize) {}

    std::size_t Read(std::span<char> buffer) override {
        const std::size_t count = std::min({left_.size(), buffer.size(), pieceSize_});
        std::copy_n(left_.begin(), count, buffer.begin());
        left_.remove_prefix(count);
        return count;
    }
    std::size_t Left() const { return left_.size(); }

private:
    std::string_view left_;
    const std::size_t pieceSize_;
};

}  // namespace tallyhorn
