#include "platform/SoundDevice.h"

#include "platform/linux/SoundThread.h"

namespace tallyhorn {
namespace {

/// Plays through a SoundThread.  CurrentMode depends only on the commands: it stays Playing when the sound
/// has ended.
class LinuxSoundDevice final : public SoundDevice {
public:
    LinuxSoundDevice() = default;
    ~LinuxSoundDevice() override {
        if (thread_ != nullptr)
            thread_->End();
    }
    LinuxSoundDevice(const LinuxSoundDevice&) = delete;
    LinuxSoundDevice& operator=(const LinuxSoundDevice&) = delete;

    Mode CurrentMode() const override { return mode_; }
    void SetFileName(const std::filesystem::path& file) override { fileName_ = file; }

    bool Open() override {
        mode_ = Mode::Stopped;
        return true;
    }
    bool Close() override {
        mode_ = Mode::NotOpen;
        if (thread_ != nullptr)
            thread_->Want({});
        return true;
    }
    /// Has nothing to do, since Play always begins at the start of the file.
    bool Prev() override { return mode_ != Mode::NotOpen; }
    /// The first call starts the thread, so that no thread exists if no sound is ever played.
    bool Play() override {
        if (mode_ == Mode::NotOpen)
            return false;
        mode_ = Mode::Playing;
        if (thread_ == nullptr)
            thread_ = SoundThread::Start();
        thread_->Want(fileName_);
        return true;
    }

private:
    std::filesystem::path fileName_;
    Mode mode_ = Mode::NotOpen;
    std::shared_ptr<SoundThread> thread_;
};

}  // namespace

std::unique_ptr<SoundDevice> MakeSoundDevice() {
    return std::make_unique<LinuxSoundDevice>();
}

}  // namespace tallyhorn
