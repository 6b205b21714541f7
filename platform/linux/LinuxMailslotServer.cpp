#include "platform/linux/LinuxMailslotServer.h"

#include <pthread.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/StartWithoutSignals.h"

namespace tallyhorn {
namespace {

/// Datagrams that the pump takes with one call at most.  The system lets few wait in a socket (10 by
/// default), so more would seldom be used.
constexpr std::size_t BatchSize = 64;

/// The buffers and headers of one recvmmsg call, set up once.
class DatagramBatch {
public:
    explicit DatagramBatch(std::size_t maximumSize)
        : size_(std::clamp<std::size_t>(DatagramQueue::ChunkSize / maximumSize, 1, BatchSize)),
          bytes_(size_ * maximumSize) {
        for (std::size_t i = 0; i < size_; ++i) {
            vectors_[i] = {.iov_base = bytes_.data() + i * maximumSize, .iov_len = maximumSize};
            messages_[i].msg_hdr.msg_iov = &vectors_[i];
            messages_[i].msg_hdr.msg_iovlen = 1;
        }
        texts_.reserve(size_);
    }

    /// Blocks until a datagram is there and takes what else waits; false where the socket is done for.
    bool Receive(int socket) {
        texts_.clear();
        const int got =
            recvmmsg(socket, messages_.data(), static_cast<unsigned>(size_), MSG_WAITFORONE, nullptr);
        if (got < 0)
            return MayPass(errno);
        for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
            // Longer than the mailslot takes, by a sender that did not ask: dropped.
            if ((messages_[i].msg_hdr.msg_flags & MSG_TRUNC) == 0)
                texts_.emplace_back(static_cast<const char*>(vectors_[i].iov_base), messages_[i].msg_len);
        }
        return true;
    }

    std::span<const std::string_view> Texts() const { return texts_; }

private:
    /// A machine short of memory will have some again; a pump that gave up would leave the senders waiting.
    static bool MayPass(int error) {
        if (error == ENOMEM || error == ENOBUFS)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return error == EINTR || error == ENOMEM || error == ENOBUFS;
    }

    const std::size_t size_;
    std::vector<char> bytes_;
    std::array<iovec, BatchSize> vectors_{};
    std::array<mmsghdr, BatchSize> messages_{};
    std::vector<std::string_view> texts_;
};

}  // namespace

LinuxMailslotServer::LinuxMailslotServer(FileDescriptor lock, FileDescriptor socket, std::string socketPath,
                                         std::size_t maximumSize)
    : lock_(std::move(lock)),
      socket_(std::move(socket)),
      socketPath_(std::move(socketPath)),
      maximumSize_(maximumSize),
      pump_(StartWithoutSignals([this] { Pump(); })) {}

LinuxMailslotServer::~LinuxMailslotServer() {
    unlink(socketPath_.c_str());
    queue_.Stop();
    // Ends a blocked receive too; senders that wait are told that the reader is gone.
    shutdown(socket_.Get(), SHUT_RDWR);
    pump_.join();
}

std::int32_t LinuxMailslotServer::Handle() const {
    return socket_.Get();
}

bool LinuxMailslotServer::GetInfo(MailslotInfo& info) {
    info = {.MaximumSize = maximumSize_, .NextSize = queue_.NextSize(), .Waiting = queue_.Count()};
    return true;
}

bool LinuxMailslotServer::Read(std::span<char> buffer, std::size_t& read) {
    return queue_.Read(buffer, read);
}

void LinuxMailslotServer::Pump() {
    // Marked as work that need not run at once when woken, it finds more datagrams each time: a wake-up costs
    // more than a datagram.  Refused, it is only dearer.
    const sched_param noPriority{};
    pthread_setschedparam(pthread_self(), SCHED_BATCH, &noPriority);
    DatagramBatch batch(maximumSize_);
    // While the queue has no room the datagrams stay in the socket, and senders wait there.
    while (queue_.WaitForRoom() && batch.Receive(socket_.Get()))
        queue_.Append(batch.Texts());
}

}  // namespace tallyhorn
