#pragma once

namespace tallyhorn {

/// Makes the heap grow by 64 MiB at a time (Linux).  With the default step, a storm of notifications causes
/// thousands of system calls a second for more memory, which take as long as reading the notifications.  Call
/// it once, before any thread starts.
void GrowHeapInLargeSteps();

}  // namespace tallyhorn
