#include "platform/Heap.h"

namespace tallyhorn {

/// Does nothing, since the heap of Windows itself chooses suitable steps.
void GrowHeapInLargeSteps() {}

}  // namespace tallyhorn
