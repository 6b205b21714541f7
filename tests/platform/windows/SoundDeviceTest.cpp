#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/SoundDevice.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

using Mode = SoundDevice::Mode;

constexpr std::uint32_t Rate = 44'100;

/// Returns half a second of sound in one channel, in which each sample is one more than the one before.
std::string RisingSamples() {
    std::string samples;
    for (std::uint32_t i = 1; i <= Rate / 2; ++i)
        samples += LittleEndian(i, 2);
    return samples;
}

std::string Wave(const std::string& samples) {
    const std::string format = LittleEndian(1, 2) + LittleEndian(1, 2) + LittleEndian(Rate, 4) +
                               LittleEndian(Rate * 2, 4) + LittleEndian(2, 2) + LittleEndian(16, 2);
    const std::string chunks = "WAVEfmt " + LittleEndian(16, 4) + format + "data" +
                               LittleEndian(static_cast<std::uint32_t>(samples.size()), 4) + samples;
    return "RIFF" + LittleEndian(static_cast<std::uint32_t>(chunks.size()), 4) + chunks;
}

/// Removes silent samples: a busy machine leaves gaps, and the end of the file may still be missing.
std::string WithoutSilence(const std::string& samples) {
    std::string heard;
    for (std::size_t at = 0; at + 1 < samples.size(); at += 2) {
        if (samples[at] != 0 || samples[at + 1] != 0)
            heard.append(samples, at, 2);
    }
    return heard;
}

class SoundDeviceTest : public ::testing::Test {
protected:
    SoundDeviceTest() {
        WriteBytes(folder_ / "sound.wav", Wave(RisingSamples()));
        WriteBytes(folder_ / "broken.wav", Wave(RisingSamples()).substr(0, 30));
    }
    bool Open(const std::string& name) {
        device_->SetFileName(folder_ / name);
        return device_->Open();
    }

    TemporaryFolder folder_;
    std::unique_ptr<SoundDevice> device_ = MakeSoundDevice();
};

TEST_F(SoundDeviceTest, ReportsItsMode) {
    EXPECT_EQ(device_->CurrentMode(), Mode::NotOpen);
    EXPECT_FALSE(device_->Play());
    EXPECT_FALSE(Open("none.wav"));
    EXPECT_FALSE(Open("broken.wav") && device_->Play());
    EXPECT_TRUE(device_->Close());
    ASSERT_TRUE(Open("sound.wav"));
    EXPECT_EQ(device_->CurrentMode(), Mode::Stopped);
    EXPECT_TRUE(device_->Prev() && device_->Close());
    EXPECT_EQ(device_->CurrentMode(), Mode::NotOpen);
}

/// The sound device that tests/CMakeLists.txt sets up writes what it plays to a file.
TEST_F(SoundDeviceTest, PlaysAFileAgain) {
    const char* const played = std::getenv("TALLYHORN_PLAYED");
    if (played == nullptr)
        GTEST_SKIP() << "no device records what is played";
    for (const bool cutShort : {true, false, false}) {
        ASSERT_TRUE(device_->Close());
        std::filesystem::remove(played);
        ASSERT_TRUE(Open("sound.wav") && device_->Prev() && device_->Play());
        EXPECT_NE(device_->CurrentMode(), Mode::NotOpen);
        if (cutShort)
            continue;
        EXPECT_TRUE(Eventually([this] { return device_->CurrentMode() == Mode::Stopped; }));
        EXPECT_TRUE(Eventually([played] { return WithoutSilence(ReadBytes(played)) == RisingSamples(); }));
    }
}

}  // namespace
}  // namespace tallyhorn
