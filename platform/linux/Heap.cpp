#include "platform/Heap.h"

#include <malloc.h>

namespace tallyhorn {

void GrowHeapInLargeSteps() {
    // This reserves addresses; memory is used only for pages that are written to.
    constexpr int Step = 64 << 20;
    mallopt(M_TOP_PAD, Step);
}

}  // namespace tallyhorn
