#include <gtest/gtest.h>

#include "config/PrivateProfile.h"
#include "config/Settings.h"
#include "config/TextProfileFunctions.h"
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

    /// Returns the commands for an alert, a second after the one before.
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
    AlertSound sound_{profile_, settings_, clock_, device_, {first_.Path(), second_.Path()}};
};

TEST_F(AlertSoundTest, EachAlertPlaysFromTheStartUnlessACommandFails) {
    WriteBytes(first_ / "sound.wav", "wave");
    for (const Mode before : {Mode::NotOpen, Mode::Stopped, Mode::Playing, Mode::Paused}) {
        for (const std::string failing : {"Close ", "Open ", "Prev ", "Play ", "no command"}) {
            device_.Now = before;
            device_.Failing = failing;
            const std::string commands = Alert();
            EXPECT_EQ(commands.starts_with("Close "), before != Mode::NotOpen) << commands;
            const bool fails = commands.find(failing) != std::string::npos;
            EXPECT_TRUE(commands.ends_with(fails ? failing : "Open Prev Play ")) << failing << commands;
        }
    }
    device_.AfterOpen = Mode::Paused;
    EXPECT_EQ(Alert(), "Close Open Play ");
}

TEST_F(AlertSoundTest, AlertsWithinATenthOfASecondAfterACountedOneAreDropped) {
    WriteBytes(first_ / "sound.wav", "wave");
    for (const char* const failing : {"", "Open "}) {
        device_.Failing = failing;
        EXPECT_NE(Alert(), "");
        int last = 0;
        // The dropped ones do not prolong the silence, and failed ones count.
        for (const auto& [milliseconds, counts] :
             {std::pair(60, false), {99, false}, {100, true}, {160, false}, {199, false}, {200, true}}) {
            clock_.Advance(std::chrono::milliseconds(milliseconds - std::exchange(last, milliseconds)));
            device_.Commands.clear();
            sound_.PlayAlertSound();
            EXPECT_EQ(!device_.Commands.empty(), counts) << milliseconds;
        }
    }
}

TEST_F(AlertSoundTest, TheFirstFolderWithAFileProvidesTheSound) {
    EXPECT_EQ(Alert(), "") << "no file";
    std::filesystem::create_directory(first_ / "sound.wav");
    EXPECT_EQ(Alert(), "") << "no regular file";
    WriteBytes(second_ / "sound.wav", "wave");
    EXPECT_EQ(Alert(), "Open Prev Play ");
    EXPECT_EQ(device_.FileName, second_ / "sound.wav");
}

TEST_F(AlertSoundTest, TheSwitchIsWrittenAndTakesEffectAtOnce) {
    WriteBytes(first_ / "sound.wav", "wave");
    for (const bool on : {false, true, false, true}) {
        sound_.SoundMode();
        EXPECT_EQ(sound_.SoundOn(), on);
        EXPECT_EQ(ReadSettings(profile_).SoundOn, on);
        EXPECT_EQ(!Alert().empty(), on);
    }
    device_.Commands.clear();
    sound_.Close();
    sound_.Close();
    EXPECT_EQ(device_.Commands, "Close ") << "only if it is open";
}

}  // namespace
}  // namespace tallyhorn
