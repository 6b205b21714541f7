#include "platform/Heap.h"

namespace tallyhorn {

/// The heap of Windows chooses suitable steps itself.
void GrowHeapInLargeSteps() {}

}  // namespace tallyhorn
