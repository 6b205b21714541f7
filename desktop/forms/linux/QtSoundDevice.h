#pragma once

#include <QAudioSink>
#include <QBuffer>
#include <QObject>
#include <QThread>
#include <filesystem>
#include <memory>
#include <mutex>

#include "platform/SoundDevice.h"

namespace tallyhorn {

/// Plays one file in a thread of its own, since Qt waits for the sound server, and a server that hangs keeps
/// it for half a minute.  Made and asked from one thread; what was wanted last counts, and no more than one
/// wish waits.
class SoundThread final : public QThread {
public:
    SoundThread();

    /// Plays the file from its start in place of what is playing; silence where the path is empty.
    void Want(const std::filesystem::path& file);

protected:
    void run() override;

private:
    void Fulfil();
    void Start(const std::filesystem::path& file);

    QObject inThread_;  ///< what the thread's events are addressed to
    std::unique_ptr<QBuffer> samples_;
    std::unique_ptr<QAudioSink> sink_;  ///< plays the samples; goes first
    std::mutex mutex_;
    std::filesystem::path wanted_;  ///< guarded by the mutex
    bool told_ = false;             ///< guarded by the mutex: the thread has yet to look at the wish
};

/// The sound device by Qt; owns its thread, which the first sound starts.
/// User-interface thread only.  The mode tells what was asked for, not what is heard.
class QtSoundDevice final : public SoundDevice {
public:
    QtSoundDevice() = default;
    ~QtSoundDevice() override;
    QtSoundDevice(const QtSoundDevice&) = delete;
    QtSoundDevice& operator=(const QtSoundDevice&) = delete;

    Mode CurrentMode() const override { return mode_; }
    void SetFileName(const std::filesystem::path& file) override { fileName_ = file; }
    bool Open() override;
    bool Close() override;
    bool Prev() override;
    bool Play() override;

private:
    std::filesystem::path fileName_;
    Mode mode_ = Mode::NotOpen;
    std::unique_ptr<SoundThread> thread_;
};

}  // namespace tallyhorn
