#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyhorn {

/// What a wave file holds: the samples, which lie in the file's own bytes, and how to play them.
struct WaveSamples {
    std::uint32_t Channels = 0;
    std::uint32_t Rate = 0;  ///< samples a second
    std::uint32_t Bits = 0;  ///< of one sample: 8, which has no sign, 16 or 32
    std::string_view Data;
};

/// In bytes, of the samples of one moment.
std::uint32_t FrameSize(const WaveSamples& wave);

/// Reads a whole wave file of the plain kind: uncompressed samples of 8, 16 or 32 bits, one or two channels,
/// 4,000 to 192,000 samples a second.  Nothing for any other, whose numbers a player might not come back
/// from. Pure.
std::optional<WaveSamples> ReadWave(std::string_view file);

}  // namespace tallyhorn
