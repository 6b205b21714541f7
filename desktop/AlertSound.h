#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/Clock.h"

namespace tallyhorn {

class PrivateProfile;
class SoundDevice;
struct Settings;

/// The sound that tells of arrivals, and the user's switch for it, which is the settings' own. User-interface
/// thread only.
class AlertSound {
public:
    /// All of it outlives this one.
    struct Parts {
        PrivateProfile& Profile;
        Settings& Flags;
        const Clock& Time;
        SoundDevice& Device;
    };
    /// "sound.wav" is taken from the first of `folders` that has it.
    AlertSound(const Parts& parts, std::vector<std::filesystem::path> folders);

    bool SoundOn() const;
    /// Writes nothing: whoever sets it has.
    void SetSoundOn(bool on);
    /// The other way round, and writes that.
    void SoundMode();

    /// Plays the sound from its start, whatever of it is still playing; nothing where the user wants none or
    /// there is no such file.  Returns at once and tells of no failure.  An alert within a tenth of a second
    /// of the one before is not played: that one has only just begun.
    void PlayAlertSound();
    /// Ends what is playing and leaves the device to others.
    void Close();

private:
    bool TooSoon();
    void Play(const std::filesystem::path& file);

    Parts parts_;
    std::vector<std::filesystem::path> folders_;
    std::optional<Clock::TimePoint> lastAlert_;
};

}  // namespace tallyhorn
