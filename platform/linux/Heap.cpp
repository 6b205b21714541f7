#include "platform/Heap.h"

#include <malloc.h>

namespace tallyhorn {

void GrowHeapInLargeSteps() {
    // This reserves only addresses; the system provides memory for a page when it is first written to.
    constexpr int Step = 64 << 20;
    mallopt(M_TOP_PAD, Step);
}

}  // namespace tallyhorn
