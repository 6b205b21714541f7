#pragma once

#include <cstddef>
#include <memory>

namespace tallyhorn {

/// Gives a chunk back to where MakeChunkMemory took it from.
struct ChunkDeleter {
    void operator()(char* memory) const;
};
/// Owns one large piece of memory; any thread may make and free one.
using ChunkMemory = std::unique_ptr<char[], ChunkDeleter>;

/// `size` bytes, a multiple of 2 MiB, which nobody has written to yet.  Where the system has pages of that
/// size the memory is made of them: taking it over page by small page costs more than filling it.
ChunkMemory MakeChunkMemory(std::size_t size);

}  // namespace tallyhorn
