#include "desktop/forms/linux/QtSoundDevice.h"

#include <unistd.h>

#include <QAudioDevice>
#include <QAudioFormat>
#include <QMediaDevices>
#include <QTimer>
#include <QtGlobal>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "desktop/WaveFile.h"
#include "platform/WholeFile.h"

namespace tallyhorn {
namespace {

/// All of a sound is kept in memory.
constexpr std::size_t LargestFile = std::size_t{16} << 20U;

/// How long the sound server may play on what it has once it has got everything.
constexpr std::chrono::seconds LongestTail{2};

/// How long the end of the console waits for a thread that waits for the sound server.
constexpr std::chrono::milliseconds Patience{500};

thread_local bool silent = false;
std::atomic<QtMessageHandler> otherThreadsHandler = nullptr;

/// What Qt says in the sound's thread is of no use to an operator who has no sound server.
void HandleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const QtMessageHandler handler = otherThreadsHandler;
    if (handler != nullptr && (!silent || type == QtFatalMsg))
        handler(type, context, text);
}

void HandleMessagesByThread() {
    static std::once_flag once;
    std::call_once(once, [] { otherThreadsHandler = qInstallMessageHandler(HandleMessage); });
}

/// Qt's own tidying at the end of the process would wait for the thread that hangs in it.
void EndWithoutTidying() {
    on_exit(
        [](int status, void* /*unused*/) {
            std::fflush(nullptr);
            _exit(status);
        },
        nullptr);
}

QAudioFormat FormatOf(const WaveSamples& wave) {
    QAudioFormat format;
    format.setChannelCount(static_cast<int>(wave.Channels));
    format.setSampleRate(static_cast<int>(wave.Rate));
    format.setSampleFormat(wave.Bits == 8    ? QAudioFormat::UInt8
                           : wave.Bits == 16 ? QAudioFormat::Int16
                                             : QAudioFormat::Int32);
    return format;
}

}  // namespace

SoundThread::SoundThread() {
    setObjectName(QStringLiteral("sound"));
    inThread_.moveToThread(this);
    HandleMessagesByThread();
}

void SoundThread::Want(const std::filesystem::path& file) {
    const std::lock_guard lock(mutex_);
    wanted_ = file;
    if (!std::exchange(told_, true))
        QMetaObject::invokeMethod(
            &inThread_, [this] { Fulfil(); }, Qt::QueuedConnection);
}

void SoundThread::run() {
    silent = true;
    exec();
    sink_.reset();
    samples_.reset();
}

void SoundThread::Fulfil() {
    std::filesystem::path file;
    {
        const std::lock_guard lock(mutex_);
        told_ = false;
        file = wanted_;
    }
    sink_.reset();
    if (!file.empty())
        Start(file);
}

/// File and device are those of the moment.
void SoundThread::Start(const std::filesystem::path& file) {
    std::string bytes;
    if (ReadWholeFile(file.string(), LargestFile, bytes) != ReadOutcome::Complete)
        return;
    const std::optional<WaveSamples> wave = ReadWave(bytes);
    const QAudioDevice device = wave ? QMediaDevices::defaultAudioOutput() : QAudioDevice();
    if (device.isNull())
        return;
    samples_ = std::make_unique<QBuffer>();
    samples_->setData(wave->Data.data(), static_cast<int>(wave->Data.size()));
    samples_->open(QIODevice::ReadOnly);
    sink_ = std::make_unique<QAudioSink>(device, FormatOf(*wave));
    // Idle is when all has been handed over; a stop at once would cut off the end of it.
    QAudioSink* const sink = sink_.get();
    QObject::connect(sink, &QAudioSink::stateChanged, sink, [sink](QAudio::State state) {
        if (state == QAudio::IdleState)
            QTimer::singleShot(LongestTail, sink, &QAudioSink::stop);
    });
    sink_->start(samples_.get());
}

/// A thread that hangs is left to the end of the process.
QtSoundDevice::~QtSoundDevice() {
    if (thread_ == nullptr)
        return;
    thread_->quit();
    if (thread_->wait(QDeadlineTimer(Patience)))
        return;
    static_cast<void>(thread_.release());
    EndWithoutTidying();
}

bool QtSoundDevice::Open() {
    mode_ = Mode::Stopped;
    return true;
}

bool QtSoundDevice::Close() {
    mode_ = Mode::NotOpen;
    if (thread_ != nullptr)
        thread_->Want({});
    return true;
}

/// Every `Play` begins at the start.
bool QtSoundDevice::Prev() {
    return mode_ != Mode::NotOpen;
}

bool QtSoundDevice::Play() {
    if (mode_ == Mode::NotOpen)
        return false;
    mode_ = Mode::Playing;
    if (thread_ == nullptr) {
        thread_ = std::make_unique<SoundThread>();
        thread_->start();
    }
    thread_->Want(fileName_);
    return true;
}

std::unique_ptr<SoundDevice> MakeSoundDevice() {
    return std::make_unique<QtSoundDevice>();
}

}  // namespace tallyhorn
