#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyhorn {

/// The samples of a wave file, as a view into the file's bytes, and their format.
struct WaveSamples {
    std::uint32_t Channels = 0;
    std::uint32_t Rate = 0;  ///< frames per second
    std::uint32_t Bits = 0;  ///< per sample: 8 (unsigned), 16 or 32 (signed)
    std::string_view Data;
};

/// Returns the size in bytes of a frame, which has one sample for each channel.
std::uint32_t FrameSize(const WaveSamples& wave);

/// Reads an uncompressed wave file with samples of 8, 16 or 32 bits, one or two channels and 4,000 to 192,000
/// frames per second.  Returns nothing for any other file, so that the sound server never receives a format
/// that it might not support.
std::optional<WaveSamples> ReadWave(std::string_view file);

}  // namespace tallyhorn
