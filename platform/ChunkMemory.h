#pragma once

#include <cstddef>
#include <memory>

namespace tallyhorn {

/// Frees memory that MakeChunkMemory allocated.
struct ChunkDeleter {
    void operator()(char* memory) const;
};
/// Owns one large block of memory.  Any thread may allocate and free it.
using ChunkMemory = std::unique_ptr<char[], ChunkDeleter>;

/// Allocates `size` uninitialised bytes; `size` is a multiple of 2 MiB.  On Linux, asks for huge pages of
/// that size, because the page faults of ordinary pages cost more than filling the memory.
ChunkMemory MakeChunkMemory(std::size_t size);

}  // namespace tallyhorn
