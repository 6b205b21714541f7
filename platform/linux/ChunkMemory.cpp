#include "platform/ChunkMemory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace tallyhorn {
namespace {

constexpr std::size_t LargePage = std::size_t{2} << 20U;

}  // namespace

void ChunkDeleter::operator()(char* memory) const {
    std::free(memory);
}

ChunkMemory MakeChunkMemory(std::size_t size) {
    void* const memory = std::aligned_alloc(LargePage, size);
    if (memory == nullptr)
        throw std::bad_alloc();
    // If this fails, the memory has ordinary pages, which are only slower.
    static_cast<void>(madvise(memory, size, MADV_HUGEPAGE));
    return ChunkMemory(static_cast<char*>(memory));
}

}  // namespace tallyhorn
