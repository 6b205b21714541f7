#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>

namespace tallyhorn {

/// Does the least that a parser must do, for comparison: copies `text` (at most 512 bytes) and searches each
/// tenth of it for one byte, like a parser that looks for the ends of ten fields.
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
