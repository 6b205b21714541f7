#pragma once

#include <ctime>

namespace tallyhorn {

/// Returns the processor time, kernel time included, of the process (CLOCK_PROCESS_CPUTIME_ID) or of the
/// calling thread (CLOCK_THREAD_CPUTIME_ID).  Exact for short times, unlike getrusage, which misses what a
/// running thread has used since the last tick of the system's timer.
inline double UsedProcessorSeconds(clockid_t whose) {
    timespec time{};
    clock_gettime(whose, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace tallyhorn
