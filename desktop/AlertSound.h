#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/Clock.h"

namespace tallyhorn {

class PrivateProfile;
class SoundDevice;
struct Settings;

/// Plays the alert sound for arriving notifications, and manages the setting that switches it on
/// (`Settings::SoundOn`).  Owns neither the device nor the settings.
class AlertSound {
public:
    /// The referenced objects must outlive this one.  The sound is the file "sound.wav" in the first of
    /// `folders` that contains it, searched for at each alert.
    AlertSound(PrivateProfile& profile, Settings& settings, const Clock& clock, SoundDevice& device,
               std::vector<std::filesystem::path> folders);

    bool SoundOn() const;
    /// Switches the sound on or off without writing that to the settings file.
    void SetSoundOn(bool on);
    /// Switches the sound on if it is off, and off if it is on, and writes that to the settings file.
    void SoundMode();

    /// Starts the sound from its beginning, even if it is still playing, and returns at once.  Does nothing
    /// if the sound is switched off or there is no file.  Ignores errors.  Also drops an alert within a tenth
    /// of a second after the previous one that was not dropped, so that a storm of notifications uses the
    /// disk and the device at most ten times a second.
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
    std::optional<Clock::TimePoint> lastAlert_;  ///< the last alert that was not dropped
};

}  // namespace tallyhorn
