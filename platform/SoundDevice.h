#pragma once

#include <filesystem>
#include <memory>

namespace tallyhorn {

/// Plays one wave file at a time, in the terms of the multimedia control interface; closes as it goes.
/// Called from the user-interface thread alone, which no call holds up: what takes time goes on behind it.
class SoundDevice {
public:
    /// The interface's own numbers.
    enum class Mode {
        NotOpen = 524,
        Stopped = 525,
        Playing = 526,
        Recording = 527,
        Seeking = 528,
        Paused = 529,
        Ready = 530
    };

    virtual ~SoundDevice() = default;
    virtual Mode CurrentMode() const = 0;
    /// Counts from the next `Open`.
    virtual void SetFileName(const std::filesystem::path& file) = 0;
    // The commands: false where one fails.  A failure that shows only later is silence.
    virtual bool Open() = 0;
    /// Ends what is playing.
    virtual bool Close() = 0;
    /// Back to the start.
    virtual bool Prev() = 0;
    /// Begins to play and does not wait for the end.
    virtual bool Play() = 0;
};

/// The machine's own.
std::unique_ptr<SoundDevice> MakeSoundDevice();

}  // namespace tallyhorn
