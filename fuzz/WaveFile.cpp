// Reads arbitrary bytes as a WAVE file.  The samples found must lie within the bytes and consist of whole
// frames in a format that the console plays.

#include "platform/linux/WaveFile.h"

#include <cstdint>

#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tallyhorn::Require;
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const auto wave = tallyhorn::ReadWave(file);
    if (!wave)
        return 0;
    const std::uint32_t frame = tallyhorn::FrameSize(*wave);
    Require(frame >= 1 && frame <= 8 && wave->Rate >= 4'000 && wave->Rate <= 192'000);
    Require(!wave->Data.empty() && wave->Data.size() % frame == 0);
    Require(wave->Data.data() >= file.data() &&
            wave->Data.data() + wave->Data.size() <= file.data() + file.size());
    return 0;
}
