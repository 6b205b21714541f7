#include "desktop/AlertSound.h"

#include <chrono>
#include <utility>

#include "config/Settings.h"
#include "platform/DataFolder.h"
#include "platform/SoundDevice.h"

namespace tallyhorn {
namespace {

constexpr const char* SoundFileName = "sound.wav";
constexpr std::chrono::milliseconds ShortestGap{100};

}  // namespace

AlertSound::AlertSound(const Parts& parts, std::vector<std::filesystem::path> folders)
    : parts_(parts), folders_(std::move(folders)) {}

bool AlertSound::SoundOn() const {
    return parts_.Flags.SoundOn;
}

void AlertSound::SetSoundOn(bool on) {
    parts_.Flags.SoundOn = on;
}

void AlertSound::SoundMode() {
    SetSoundOn(!SoundOn());
    WriteSetting(parts_.Profile, "SoundOn", SoundOn() ? "1" : "0");
}

void AlertSound::PlayAlertSound() {
    if (!SoundOn() || TooSoon())
        return;
    if (const std::filesystem::path file = FindOwnFile(folders_, SoundFileName); !file.empty())
        Play(file);
}

void AlertSound::Close() {
    if (parts_.Device.CurrentMode() != SoundDevice::Mode::NotOpen)
        parts_.Device.Close();
}

/// An alert that came to nothing counts too: a storm asks neither disk nor device more often.
bool AlertSound::TooSoon() {
    const Clock::TimePoint now = parts_.Time.Now();
    if (lastAlert_ && now - *lastAlert_ < ShortestGap)
        return true;
    lastAlert_ = now;
    return false;
}

void AlertSound::Play(const std::filesystem::path& file) {
    SoundDevice& device = parts_.Device;
    if (device.CurrentMode() != SoundDevice::Mode::NotOpen && !device.Close())
        return;
    device.SetFileName(file);
    if (!device.Open())
        return;
    if (device.CurrentMode() != SoundDevice::Mode::Paused && !device.Prev())
        return;
    device.Play();
}

}  // namespace tallyhorn
