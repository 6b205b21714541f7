#include "platform/linux/SoundThread.h"

#include <pulse/simple.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>

#include "platform/WholeFile.h"
#include "platform/linux/StartWithoutSignals.h"
#include "platform/linux/WaveFile.h"

namespace tallyhorn {
namespace {

constexpr std::chrono::milliseconds LongestEnd{500};

/// Larger files are not played, since a sound is read into memory as a whole.
constexpr std::size_t LargestFile = std::size_t{16} << 20U;

/// The size of the server's buffer.  A sound of usual length fits into it, so that no write blocks.  Closing
/// the stream discards what is in the buffer.
constexpr std::uint32_t AheadSize = std::uint32_t{1} << 20U;
constexpr std::size_t PieceSize = 8192;  ///< a multiple of every frame size

/// The time to wait, beyond the length of the sound, until the server has played its buffer.
constexpr std::chrono::seconds LongestTail{2};

struct CloseStream {
    void operator()(pa_simple* stream) const { pa_simple_free(stream); }
};
using Stream = std::unique_ptr<pa_simple, CloseStream>;

/// Returns null if there is no sound server.
Stream OpenStream(const WaveSamples& wave) {
    const pa_sample_spec format{wave.Bits == 8    ? PA_SAMPLE_U8
                                : wave.Bits == 16 ? PA_SAMPLE_S16LE
                                                  : PA_SAMPLE_S32LE,
                                wave.Rate, static_cast<std::uint8_t>(wave.Channels)};
    constexpr auto Default = static_cast<std::uint32_t>(-1);
    // A prebuf of one frame makes playing begin with the first frame.  By default the server waits for more
    // bytes than a short sound has.
    const pa_buffer_attr buffer{.maxlength = Default,
                                .tlength = AheadSize,
                                .prebuf = FrameSize(wave),
                                .minreq = Default,
                                .fragsize = Default};
    return Stream(pa_simple_new(nullptr, "Tallyhorn Listener Console", PA_STREAM_PLAYBACK, nullptr, "Alert",
                                &format, nullptr, &buffer, nullptr));
}

}  // namespace

std::shared_ptr<SoundThread> SoundThread::Start() {
    auto sound = std::make_shared<SoundThread>();
    StartWithoutSignals([sound] { sound->Run(); }).detach();
    return sound;
}

void SoundThread::Want(const std::filesystem::path& file) {
    const std::lock_guard lock(mutex_);
    wanted_ = file;
    changed_.notify_all();
}

void SoundThread::End() {
    std::unique_lock lock(mutex_);
    ending_ = true;
    changed_.notify_all();
    changed_.wait_for(lock, LongestEnd, [this] { return ended_; });
}

void SoundThread::Run() {
    std::unique_lock lock(mutex_);
    while (!ending_) {
        const std::optional<std::filesystem::path> file = std::exchange(wanted_, std::nullopt);
        if (!file) {
            changed_.wait(lock);
            continue;
        }
        lock.unlock();
        Play(*file);
        lock.lock();
    }
    ended_ = true;
    changed_.notify_all();
}

/// Opens the file and the stream again for each sound, so that changes of the file, the sound server
/// and its devices take effect.  The sound stops when this function returns, because that closes the stream.
void SoundThread::Play(const std::filesystem::path& file) {
    std::string bytes;
    if (file.empty() || ReadWholeFile(file.string(), LargestFile, bytes) != ReadOutcome::Complete)
        return;
    const std::optional<WaveSamples> wave = ReadWave(bytes);
    const Stream stream = wave ? OpenStream(*wave) : nullptr;
    if (stream == nullptr)
        return;
    for (std::string_view left = wave->Data; !left.empty();) {
        const std::string_view piece = left.substr(0, PieceSize);
        if (IsInterrupted({}) || pa_simple_write(stream.get(), piece.data(), piece.size(), nullptr) < 0)
            return;
        left.remove_prefix(piece.size());
    }
    // Waits until the server has played its buffer, which holds at most AheadSize bytes.
    const std::size_t left = std::min<std::size_t>(wave->Data.size(), AheadSize);
    IsInterrupted(std::chrono::seconds(left / FrameSize(*wave) / wave->Rate) + LongestTail);
}

bool SoundThread::IsInterrupted(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, time, [this] { return wanted_ || ending_; });
}

}  // namespace tallyhorn
