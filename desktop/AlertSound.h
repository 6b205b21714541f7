#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/Clock.h"

namespace tallyhorn {

class PrivateProfile;
class SoundDevice;
struct Settings;

/// The sound that is played when notifications arrive, and the switch for it (`Settings::SoundOn`).  Owns
/// neither the device nor the settings.
class AlertSound {
public:
    /// The referenced objects must outlive this one.  The first of `folders` that contains "sound.wav"
    /// provides the sound; it is looked for at each alert.
    AlertSound(PrivateProfile& profile, Settings& settings, const Clock& clock, SoundDevice& device,
               std::vector<std::filesystem::path> folders);

    bool SoundOn() const;
    /// Sets the switch without writing it to the settings file.
    void SetSoundOn(bool on);
    /// Inverts the switch and writes it to the settings file.
    void SoundMode();

    /// Starts the sound from its beginning, even if it is still playing, and returns at once.  Does nothing
    /// if the switch is off or there is no file; reports no failure.  Within a tenth of a second after an
    /// alert that was not dropped, further alerts are dropped, so that a storm uses the disk and the device
    /// at most ten times a second.
    void PlayAlertSound();
    /// Stops the sound and closes the device, so that other programs can use it.
    void Close();

private:
    bool TooSoon();
    void Play(const std::filesystem::path& file);

    PrivateProfile& profile_;
    Settings& settings_;
    const Clock& clock_;
    SoundDevice& device_;
    std::vector<std::filesystem::path> folders_;
    std::optional<Clock::TimePoint> lastAlert_;  ///< the last one that was not dropped
};

}  // namespace tallyhorn
