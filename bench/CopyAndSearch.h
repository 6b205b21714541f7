#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>

namespace tallyhorn {

/// The yardstick of parsers: copies `text`, of 512 bytes at most, and makes ten searches that each go over a
/// tenth of it, as those for ten fields do.
inline void CopyAndSearch(benchmark::State& state, const std::string& text) {
    std::array<char, 512> copy{};
    const std::size_t part = text.size() / 10;
    for (auto _ : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::ClobberMemory();
        for (std::size_t i = 0; i < 10; ++i)
            benchmark::DoNotOptimize(std::memchr(copy.data() + i * part, '\x01', part));
    }
}

}  // namespace tallyhorn
