#include "platform/linux/LinuxDatagramReceiver.h"

#include <linux/sock_diag.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/linux/DatagramBatch.h"
#include "platform/linux/StartWithoutSignals.h"

namespace tallyhorn {
namespace {

constexpr int LastBatches = DatagramReceiver::LastDatagrams / DatagramBatch::MostDatagrams;

/// Receives without blocking.  Returns 0 if nothing is waiting, and -1 for an error.
int Receive(DatagramBatch& batch, int socket) {
    const int got = batch.Receive(socket, MSG_DONTWAIT);
    return got < 0 && (errno == EAGAIN || errno == EINTR) ? 0 : got;
}

/// Returns how long the pump may sleep while datagrams arrive, in milliseconds.  A longer sleep costs less
/// processor time, but everything that arrives meanwhile must fit into the receive buffer, which many systems
/// keep small.
int ShortDelayFor(int socket) {
    constexpr int Small = 2 << 20;
    constexpr int Large = 8 << 20;
    int size = 0;
    socklen_t length = sizeof size;
    // SO_RCVBUF returns twice the size that was set, since each datagram occupies more than its bytes.
    getsockopt(socket, SOL_SOCKET, SO_RCVBUF, &size, &length);
    return size < Small ? 1 : size < Large ? 2 : 4;
}

}  // namespace

LinuxDatagramReceiver::LinuxDatagramReceiver(FileDescriptor socket, FileDescriptor stop, std::uint16_t port,
                                             std::function<void()> wake)
    : socket_(std::move(socket)),
      stop_(std::move(stop)),
      port_(port),
      shortDelay_(ShortDelayFor(socket_.Get())),
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
    if (!socket_)
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
    DatagramBatch batch(DatagramQueue::LargestText);
    while (!stopping_) {
        const int got = Receive(batch, socket_.Get());
        if (got > 0)
            inbox_.Put(batch.Texts());
        // After a batch that was not full, a short sleep lets several datagrams arrive: waking up for each of
        // them would cost more than all other work.
        const bool full = batch.Size() == static_cast<std::size_t>(got);
        Wait(got < 0    ? Delay::AfterError
             : got == 0 ? Delay::UntilReadable
             : full     ? Delay::None
                        : Delay::Short);
    }
    // Takes the datagrams that the socket still holds, but no more than LastDatagrams, so that a flood cannot
    // keep the thread running.
    for (int i = 0; i < LastBatches && Receive(batch, socket_.Get()) > 0; ++i)
        inbox_.Put(batch.Texts());
}

/// Waits as `delay` says, but no longer than until Stop is called.
void LinuxDatagramReceiver::Wait(Delay delay) {
    // In milliseconds.  Most errors are temporary shortages of memory.
    constexpr int ErrorDelay = 10;
    if (delay == Delay::None)
        return;
    std::array<pollfd, 2> descriptors{{{.fd = stop_.Get(), .events = POLLIN, .revents = 0},
                                       {.fd = socket_.Get(), .events = POLLIN, .revents = 0}}};
    if (delay == Delay::UntilReadable)
        poll(descriptors.data(), 2, -1);
    else
        poll(descriptors.data(), 1, delay == Delay::Short ? shortDelay_ : ErrorDelay);
}

}  // namespace tallyhorn
