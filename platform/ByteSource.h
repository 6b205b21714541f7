#pragma once

#include <cstddef>
#include <span>

namespace tallyhorn {

/// A finite sequence of bytes that is read from front to back: a file, or a text in memory.  For one thread
/// at a time.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// Reads up to the size of `buffer`, which must not be empty.  Returns the number of bytes read, and 0 at
    /// the end and after a failure.
    virtual std::size_t Read(std::span<char> buffer) = 0;
};

}  // namespace tallyhorn
