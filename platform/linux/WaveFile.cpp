#include "platform/linux/WaveFile.h"

#include <algorithm>
#include <cstddef>

namespace tallyhorn {
namespace {

constexpr std::size_t RiffHeaderSize = 12;
constexpr std::size_t ChunkHeaderSize = 8;
constexpr std::size_t FormatSize = 16;
constexpr std::uint32_t UncompressedSamples = 1;
constexpr std::uint32_t LowestRate = 4'000;
constexpr std::uint32_t HighestRate = 192'000;

/// Reads a little-endian number of `size` bytes.
std::uint32_t Number(std::string_view bytes, std::size_t position, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t i = size; i-- > 0;)
        number = number << 8U | static_cast<unsigned char>(bytes[position + i]);
    return number;
}

/// Reads the format chunk; the result has no samples yet.
std::optional<WaveSamples> ReadFormat(std::string_view format) {
    if (format.size() < FormatSize || Number(format, 0, 2) != UncompressedSamples)
        return std::nullopt;
    const WaveSamples wave{Number(format, 2, 2), Number(format, 4, 4), Number(format, 14, 2), {}};
    const bool plain = (wave.Channels == 1 || wave.Channels == 2) && wave.Rate >= LowestRate &&
                       wave.Rate <= HighestRate && (wave.Bits == 8 || wave.Bits == 16 || wave.Bits == 32) &&
                       Number(format, 12, 2) == FrameSize(wave);
    return plain ? std::optional(wave) : std::nullopt;
}

}  // namespace

std::uint32_t FrameSize(const WaveSamples& wave) {
    return wave.Channels * wave.Bits / 8;
}

std::optional<WaveSamples> ReadWave(std::string_view file) {
    if (file.size() < RiffHeaderSize || !file.starts_with("RIFF") || file.substr(8, 4) != "WAVE")
        return std::nullopt;
    file.remove_prefix(RiffHeaderSize);
    std::optional<WaveSamples> wave;
    while (file.size() >= ChunkHeaderSize) {
        const std::string_view name = file.substr(0, 4);
        const std::size_t size = Number(file, 4, 4);
        file.remove_prefix(ChunkHeaderSize);
        if (size > file.size())
            return std::nullopt;
        if (name == "data") {
            if (!wave || size == 0 || size % FrameSize(*wave) != 0)
                return std::nullopt;
            wave->Data = file.substr(0, size);
            return wave;
        }
        if (name == "fmt " && !(wave = ReadFormat(file.substr(0, size))))
            return std::nullopt;
        // Chunks are padded to an even size.
        file.remove_prefix(std::min(file.size(), size + size % 2));
    }
    return std::nullopt;
}

}  // namespace tallyhorn
