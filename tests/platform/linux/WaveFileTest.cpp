#include <gtest/gtest.h>

#include <tuple>

#include "platform/linux/WaveFile.h"
#include "tests/support/FileBytes.h"

namespace tallyhorn {
namespace {

struct Wave {
    std::uint32_t Kind = 1, Channels = 1, Rate = 44'100, Bits = 16, Frame = 2;
    std::uint32_t DataSize = 64;  ///< as stated in the file; the true size is 64
    std::string Before{};         ///< chunks before the format chunk
    std::uint32_t FormatSize = 16;

    std::string File() const {
        return "RIFF" + LittleEndian(0, 4) + "WAVE" + Before + "fmt " + LittleEndian(FormatSize, 4) +
               LittleEndian(Kind, 2) + LittleEndian(Channels, 2) + LittleEndian(Rate, 4) +
               LittleEndian(Rate * Frame, 4) + LittleEndian(Frame, 2) + LittleEndian(Bits, 2) + "data" +
               LittleEndian(DataSize, 4) + std::string(64, '\1');
    }
};

TEST(WaveFileTest, AcceptsOnlyCompletePlainFiles) {
    const std::tuple<const char*, Wave, bool> cases[] = {
        {"plain", {}, true},
        {"stereo, 8 bits", {.Channels = 2, .Bits = 8}, true},
        {"32 bits", {.Bits = 32, .Frame = 4}, true},
        {"an odd chunk before", {.Before = "LIST" + LittleEndian(3, 4) + "abc" + std::string(1, '\0')}, true},
        {"compressed", {.Kind = 2, .Bits = 4, .Frame = 1}, false},
        {"no channel", {.Channels = 0, .Frame = 0}, false},
        {"nine channels", {.Channels = 9, .Frame = 18}, false},
        {"a sample a second", {.Rate = 1}, false},
        {"too fast", {.Rate = 0xFFFFFFFF}, false},
        {"24 bits", {.Bits = 24, .Frame = 3}, false},
        {"another frame", {.Frame = 4}, false},
        {"data cut short", {.DataSize = 66}, false},
        {"data without end", {.DataSize = 0xFFFFFFFF}, false},
        {"half a frame", {.DataSize = 63}, false},
        {"no data", {.DataSize = 0}, false},
        {"a chunk without end", {.Before = "LIST" + LittleEndian(0xFFFFFFFF, 4)}, false},
        {"short format", {.FormatSize = 14}, false},
    };
    for (const auto& [what, written, passes] : cases) {
        const std::string file = written.File();
        const std::optional<WaveSamples> wave = ReadWave(file);
        ASSERT_EQ(wave.has_value(), passes) << what;
        EXPECT_TRUE(!wave || (wave->Channels == written.Channels && wave->Bits == written.Bits)) << what;
        EXPECT_TRUE(!wave || wave->Data == std::string(64, '\1')) << what;
    }
}

}  // namespace
}  // namespace tallyhorn
