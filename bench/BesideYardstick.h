#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace tallyhorn {

template <typename Work>
double MillisecondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times.empty() ? 0 : times[times.size() / 2];
}

}  // namespace tallyhorn
