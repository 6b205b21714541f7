#include "platform/Heap.h"

namespace tallyhorn {

/// Windows' heap takes its steps by itself.
void GrowHeapInLargeSteps() {}

}  // namespace tallyhorn
