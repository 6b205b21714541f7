#pragma once

#include <filesystem>
#include <memory>

namespace tallyhorn {

/// The port for playing a wave file, with the commands of the Media Control Interface (MCI) of Windows.  No
/// call waits until a file has been played.  The destructor closes the device.
class SoundDevice {
public:
    /// The values are those of the MCI_MODE_ constants.
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
    /// Sets the file for the next call of Open.
    virtual void SetFileName(const std::filesystem::path& file) = 0;
    // The commands return false if they fail.  An error that occurs after a command has returned is not
    // reported.
    virtual bool Open() = 0;
    /// Stops playing and closes the file.
    virtual bool Close() = 0;
    /// Returns to the start of the file.
    virtual bool Prev() = 0;
    /// Starts playing.
    virtual bool Play() = 0;
};

/// Returns the back end for this operating system.
std::unique_ptr<SoundDevice> MakeSoundDevice();

}  // namespace tallyhorn
