#include <gtest/gtest.h>

#include "desktop/AlertSound.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/PreferencesParts.h"

namespace tallyhorn {
namespace {

using Mode = SoundDevice::Mode;

class AlertSoundTest : public ::testing::Test {
protected:
    /// Requests an alert `pause` after the previous one and returns the device's commands.
    std::string Alert(std::chrono::milliseconds pause = std::chrono::seconds(1)) {
        parts_.Time.Advance(pause);
        device_.Commands.clear();
        sound_.PlayAlertSound();
        return device_.Commands;
    }

    PreferencesParts parts_;
    TemporaryFolder second_;
    Settings settings_{0, "", 0, 0, {}, true, 0};  // the sound is on
    FakeSoundDevice device_;
    AlertSound sound_{
        parts_.Profile, settings_, parts_.Time, device_, {parts_.Folder.Path(), second_.Path()}};
};

TEST_F(AlertSoundTest, EachAlertPlaysFromTheStartUnlessACommandFails) {
    WriteBytes(parts_.Folder / "sound.wav", "wave");
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
    WriteBytes(parts_.Folder / "sound.wav", "wave");
    for (const char* const failing : {"", "Open "}) {
        device_.Failing = failing;
        EXPECT_NE(Alert(), "");
        // A dropped alert does not restart the tenth of a second; an alert that fails does.
        for (const auto& [pause, counts] :
             {std::pair(60, false), {39, false}, {1, true}, {60, false}, {39, false}, {1, true}})
            EXPECT_EQ(!Alert(std::chrono::milliseconds(pause)).empty(), counts) << pause;
    }
}

TEST_F(AlertSoundTest, PlaysTheFirstFileFoundWhileTheSwitchIsOn) {
    EXPECT_EQ(Alert(), "") << "there is no sound file";
    std::filesystem::create_directory(parts_.Folder / "sound.wav");
    EXPECT_EQ(Alert(), "") << "a folder is no sound file";
    WriteBytes(second_ / "sound.wav", "wave");
    EXPECT_EQ(Alert(), "Open Prev Play ");
    EXPECT_EQ(device_.FileName, second_ / "sound.wav");
    for (const bool on : {false, true, false, true}) {
        sound_.SoundMode();
        EXPECT_EQ(sound_.SoundOn(), on);
        EXPECT_EQ(ReadSettings(parts_.Profile).SoundOn, on);
        EXPECT_EQ(!Alert().empty(), on);
    }
    device_.Commands.clear();
    sound_.Close();
    sound_.Close();
    EXPECT_EQ(device_.Commands, "Close ") << "only an open device is closed";
}

}  // namespace
}  // namespace tallyhorn
