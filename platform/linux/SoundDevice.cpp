#include "platform/SoundDevice.h"

#include "platform/linux/SoundThread.h"

namespace tallyhorn {
namespace {

/// The mode tells what was asked for, not what is heard.
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
    /// Every `Play` begins at the start.
    bool Prev() override { return mode_ != Mode::NotOpen; }
    /// The first one starts the thread: who wants no sound has none.
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
