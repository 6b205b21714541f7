#include "platform/SoundDevice.h"

#include <windows.h>

// Must be included after windows.h.
#include <mmsystem.h>

namespace tallyhorn {
namespace {

class MciSoundDevice final : public SoundDevice {
public:
    MciSoundDevice() = default;
    ~MciSoundDevice() override { MciSoundDevice::Close(); }
    MciSoundDevice(const MciSoundDevice&) = delete;
    MciSoundDevice& operator=(const MciSoundDevice&) = delete;

    Mode CurrentMode() const override {
        MCI_STATUS_PARMS status{};
        status.dwItem = MCI_STATUS_MODE;
        const bool known = device_ != 0 && Send(MCI_STATUS, MCI_STATUS_ITEM, &status);
        return known ? static_cast<Mode>(status.dwReturn) : Mode::NotOpen;
    }

    void SetFileName(const std::filesystem::path& file) override { fileName_ = file; }

    bool Open() override {
        MCI_OPEN_PARMSW open{};
        open.lpstrDeviceType = L"waveaudio";
        open.lpstrElementName = fileName_.c_str();
        if (mciSendCommandW(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_ELEMENT,
                            reinterpret_cast<DWORD_PTR>(&open)) != 0)
            return false;
        device_ = open.wDeviceID;
        return true;
    }

    /// Closes the device.  Even if that fails, the device is not used again.
    bool Close() override {
        MCI_GENERIC_PARMS close{};
        const bool closed = device_ == 0 || Send(MCI_CLOSE, 0, &close);
        device_ = 0;
        return closed;
    }

    bool Prev() override {
        MCI_SEEK_PARMS seek{};
        return Send(MCI_SEEK, MCI_SEEK_TO_START, &seek);
    }

    bool Play() override {
        MCI_PLAY_PARMS play{};
        return Send(MCI_PLAY, 0, &play);
    }

private:
    template <class Parameters>
    bool Send(UINT command, DWORD_PTR flags, Parameters* parameters) const {
        return mciSendCommandW(device_, command, flags, reinterpret_cast<DWORD_PTR>(parameters)) == 0;
    }

    std::filesystem::path fileName_;
    MCIDEVICEID device_ = 0;  ///< 0 if none is open
};

}  // namespace

std::unique_ptr<SoundDevice> MakeSoundDevice() {
    return std::make_unique<MciSoundDevice>();
}

}  // namespace tallyhorn
