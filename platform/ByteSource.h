#pragma once

#include <cstddef>
#include <span>

namespace tallyhorn {

/// Bytes that come one after the other and end some time: a file, or a text in memory.
/// Called from one thread at a time.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// The number of bytes put into `buffer`, which is not empty; 0 at the end, and from a failure on.
    virtual std::size_t Read(std::span<char> buffer) = 0;
};

}  // namespace tallyhorn
