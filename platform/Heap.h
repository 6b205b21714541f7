#pragma once

namespace tallyhorn {

/// Has the heap grow in large steps: a storm of notifications otherwise asks the system for more memory some
/// thousand times a second, and that costs as much as reading them.  Called once, before there are threads.
void GrowHeapInLargeSteps();

}  // namespace tallyhorn
