#include "platform/Heap.h"

#include <malloc.h>

namespace tallyhorn {

void GrowHeapInLargeSteps() {
    // Addresses, not memory: pages that nobody touches cost nothing.
    constexpr int Step = 64 << 20;
    mallopt(M_TOP_PAD, Step);
}

}  // namespace tallyhorn
