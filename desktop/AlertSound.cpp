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

AlertSound::AlertSound(PrivateProfile& profile, Settings& settings, const Clock& clock, SoundDevice& device,
                       std::vector<std::filesystem::path> folders)
    : profile_(profile), settings_(settings), clock_(clock), device_(device), folders_(std::move(folders)) {}

bool AlertSound::SoundOn() const {
    return settings_.SoundOn;
}

void AlertSound::SetSoundOn(bool on) {
    settings_.SoundOn = on;
}

void AlertSound::SoundMode() {
    SetSoundOn(!SoundOn());
    WriteSetting(profile_, "SoundOn", SoundOn() ? "1" : "0");
}

void AlertSound::PlayAlertSound() {
    if (!SoundOn() || TooSoon())
        return;
    if (const std::filesystem::path file = FindOwnFile(folders_, SoundFileName); !file.empty())
        Play(file);
}

void AlertSound::Close() {
    if (device_.CurrentMode() != SoundDevice::Mode::NotOpen)
        device_.Close();
}

/// Returns whether the previous alert was less than ShortestGap ago; otherwise records this alert.  It is
/// recorded even if its sound cannot be played, because the attempt costs as much.
bool AlertSound::TooSoon() {
    const Clock::TimePoint now = clock_.Now();
    if (lastAlert_ && now - *lastAlert_ < ShortestGap)
        return true;
    lastAlert_ = now;
    return false;
}

void AlertSound::Play(const std::filesystem::path& file) {
    if (device_.CurrentMode() != SoundDevice::Mode::NotOpen && !device_.Close())
        return;
    device_.SetFileName(file);
    if (!device_.Open())
        return;
    if (device_.CurrentMode() != SoundDevice::Mode::Paused && !device_.Prev())
        return;
    device_.Play();
}

}  // namespace tallyhorn
