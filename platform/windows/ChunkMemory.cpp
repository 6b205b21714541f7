#include "platform/ChunkMemory.h"

namespace tallyhorn {

void ChunkDeleter::operator()(char* memory) const {
    delete[] memory;
}

ChunkMemory MakeChunkMemory(std::size_t size) {
    return ChunkMemory(new char[size]);
}

}  // namespace tallyhorn
