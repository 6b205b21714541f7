#include "platform/linux/LinuxDatagramReceiver.h"

#include <linux/sock_diag.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <span>
#include <utility>
#include <vector>

#include "platform/linux/StartWithoutSignals.h"

namespace tallyhorn {
namespace {

/// Datagrams that the pump takes with one call at most.
constexpr std::size_t BatchSize = 64;
/// What a receive buffer of the largest usual size can hold.
constexpr int LastBatches = 512;

/// The buffers and headers of one recvmmsg call, set up once.
class DatagramBatch {
public:
    DatagramBatch() : bytes_(BatchSize * Stride) {
        for (std::size_t i = 0; i < BatchSize; ++i) {
            vectors_[i] = {.iov_base = bytes_.data() + i * Stride, .iov_len = DatagramQueue::LargestText};
            messages_[i].msg_hdr.msg_iov = &vectors_[i];
            messages_[i].msg_hdr.msg_iovlen = 1;
        }
    }

    /// Takes what waits, without waiting for it; -1 where the system has trouble.
    int Receive(int socket) {
        const int got = recvmmsg(socket, messages_.data(), BatchSize, MSG_DONTWAIT, nullptr);
        count_ = got < 0 ? 0 : static_cast<std::size_t>(got);
        for (std::size_t i = 0; i < count_; ++i)
            texts_[i] = {static_cast<const char*>(vectors_[i].iov_base), messages_[i].msg_len};
        return got < 0 && (errno == EAGAIN || errno == EINTR) ? 0 : got;
    }

    std::span<const std::string_view> Texts() const { return std::span(texts_).first(count_); }

private:
    /// No datagram is longer than the largest text.  A little more than that, since buffers whose starts are
    /// a power of two apart would push one another out of the processor's caches.
    static constexpr std::size_t Stride = DatagramQueue::LargestText + 448;

    std::vector<char> bytes_;
    std::array<iovec, BatchSize> vectors_{};
    std::array<mmsghdr, BatchSize> messages_{};
    std::array<std::string_view, BatchSize> texts_;
    std::size_t count_ = 0;
};

}  // namespace

LinuxDatagramReceiver::LinuxDatagramReceiver(FileDescriptor socket, FileDescriptor stop, std::uint16_t port,
                                             std::function<void()> wake)
    : socket_(std::move(socket)),
      stop_(std::move(stop)),
      port_(port),
      inbox_(MostWaiting, std::move(wake)),
      pump_(StartWithoutSignals([this] { Pump(); })) {}

LinuxDatagramReceiver::~LinuxDatagramReceiver() {
    LinuxDatagramReceiver::Stop();
}

void LinuxDatagramReceiver::Stop() {
    if (!pump_.joinable())
        return;
    stopping_ = true;
    eventfd_write(stop_.Get(), 1);
    pump_.join();
    finalLosses_ = Losses();
    socket_ = FileDescriptor();
}

DatagramLosses LinuxDatagramReceiver::Losses() const {
    if (!pump_.joinable() && stopping_)
        return finalLosses_;
    DatagramLosses losses{.NoRoom = inbox_.NoRoom(), .BySystem = std::nullopt};
    std::array<std::uint32_t, SK_MEMINFO_VARS> info{};
    socklen_t size = sizeof info;
    if (getsockopt(socket_.Get(), SOL_SOCKET, SO_MEMINFO, info.data(), &size) == 0 && size == sizeof info)
        losses.BySystem = info[SK_MEMINFO_DROPS];
    return losses;
}

void LinuxDatagramReceiver::Pump() {
    pthread_setname_np(pthread_self(), "datagram-pump");
    DatagramBatch batch;
    while (!stopping_) {
        const int got = batch.Receive(socket_.Get());
        if (got > 0)
            inbox_.Put(batch.Texts());
        // After a batch that was not full more are on their way, perhaps: waking up for each of them would
        // cost more than all else.
        Wait(got < 0                ? Pause::Trouble
             : got == 0             ? Pause::UntilReadable
             : got < int{BatchSize} ? Pause::Nap
                                    : Pause::None);
    }
    // What the system has delivered already is not lost; a flood that goes on does not hold the end up.
    for (int i = 0; i < LastBatches && batch.Receive(socket_.Get()) > 0; ++i)
        inbox_.Put(batch.Texts());
}

/// In every pause the end is noticed at once.
void LinuxDatagramReceiver::Wait(Pause pause) {
    constexpr int NapMilliseconds = 2;
    // A machine short of memory will have some again.
    constexpr int TroubleMilliseconds = 10;
    if (pause == Pause::None)
        return;
    std::array<pollfd, 2> descriptors{{{.fd = stop_.Get(), .events = POLLIN, .revents = 0},
                                       {.fd = socket_.Get(), .events = POLLIN, .revents = 0}}};
    if (pause == Pause::UntilReadable)
        poll(descriptors.data(), 2, -1);
    else
        poll(descriptors.data(), 1, pause == Pause::Nap ? NapMilliseconds : TroubleMilliseconds);
}

}  // namespace tallyhorn
