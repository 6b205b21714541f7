#pragma once

#include <sys/resource.h>

namespace tallyhorn {

/// Returns the processor time, kernel time included, of the process (RUSAGE_SELF) or of the calling thread
/// (RUSAGE_THREAD).
inline double UsedProcessorSeconds(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace tallyhorn
