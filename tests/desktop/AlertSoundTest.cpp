#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

#include "config/MakeProfileFunctions.h"
#include "config/PrivateProfile.h"
#include "config/Settings.h"
#include "desktop/AlertSound.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeSoundDevice.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using Mode = SoundDevice::Mode;

class AlertSoundTest : public ::testing::Test {
protected:
    AlertSoundTest() {
        profile_.SetINIFileName(first_ / "thlisten.ini");
        settings_.SoundOn = true;
    }

    static void PutSound(const TemporaryFolder& folder) { std::ofstream(folder / "sound.wav") << "wave"; }
    /// The commands that an alert leads to, long after the one before.
    std::string Alert() {
        clock_.Advance(std::chrono::seconds(1));
        device_.Commands.clear();
        sound_.PlayAlertSound();
        return device_.Commands;
    }

    TemporaryFolder first_, second_;
    FakeClock clock_;
    std::unique_ptr<ProfileFunctions> functions_ = MakeProfileFunctions();
    PrivateProfile profile_{*functions_, clock_};
    Settings settings_;
    FakeSoundDevice device_;
    AlertSound sound_{{profile_, settings_, clock_, device_}, {first_.Path(), second_.Path()}};
};

TEST_F(AlertSoundTest, EachModeHasItsCommands) {
    PutSound(first_);
    struct Case {
        Mode Before, AfterOpen;
        const char* Failing;
        const char* Commands;
    };
    for (const Case& c : {Case{Mode::NotOpen, Mode::Stopped, "", "Open Prev Play "},
                          {Mode::NotOpen, Mode::Paused, "", "Open Play "},
                          {Mode::Playing, Mode::Stopped, "", "Close Open Prev Play "},
                          {Mode::Stopped, Mode::Stopped, "", "Close Open Prev Play "},
                          {Mode::Paused, Mode::Ready, "", "Close Open Prev Play "},
                          {Mode::Playing, Mode::Stopped, "Close", "Close "},
                          {Mode::NotOpen, Mode::Stopped, "Open", "Open "},
                          {Mode::NotOpen, Mode::Stopped, "Prev", "Open Prev "},
                          {Mode::NotOpen, Mode::Stopped, "Play", "Open Prev Play "}}) {
        device_.Now = c.Before;
        device_.AfterOpen = c.AfterOpen;
        device_.Failing = c.Failing;
        EXPECT_EQ(Alert(), c.Commands) << static_cast<int>(c.Before) << " " << c.Failing;
        clock_.Advance(std::chrono::milliseconds(99));
        sound_.PlayAlertSound();
        EXPECT_EQ(device_.Commands, c.Commands) << "ten times a second at most, even where it fails";
    }
}

TEST_F(AlertSoundTest, TheFirstFolderThatHasTheFileGivesIt) {
    EXPECT_EQ(Alert(), "") << "no file";
    std::filesystem::create_directory(first_ / "sound.wav");
    EXPECT_EQ(Alert(), "") << "no regular file";
    PutSound(second_);
    EXPECT_EQ(Alert(), "Open Prev Play ");
    EXPECT_EQ(device_.FileName, second_ / "sound.wav");
}

TEST_F(AlertSoundTest, TheSwitchIsWrittenAndCountsAtOnce) {
    PutSound(first_);
    sound_.SoundMode();
    EXPECT_FALSE(settings_.SoundOn);
    EXPECT_NE(ReadBytes(first_ / "thlisten.ini").find("[General]\r\nSoundOn=0\r\n"), std::string::npos);
    EXPECT_EQ(Alert(), "");
    sound_.SoundMode();
    EXPECT_TRUE(sound_.SoundOn());
    EXPECT_NE(ReadBytes(first_ / "thlisten.ini").find("SoundOn=1\r\n"), std::string::npos);
    EXPECT_EQ(Alert(), "Open Prev Play ");
    device_.Commands.clear();
    sound_.Close();
    sound_.Close();
    EXPECT_EQ(device_.Commands, "Close ") << "only what is open is closed";
}

}  // namespace
}  // namespace tallyhorn
