#include "platform/linux/LinuxMailslotServer.h"

#include <pthread.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

#include "platform/linux/DatagramBatch.h"
#include "platform/linux/StartWithoutSignals.h"

namespace tallyhorn {
namespace {

/// The system lets few datagrams wait in a socket (10 by default), so large batches would seldom be used.
std::size_t BatchSizeFor(std::size_t maximumSize) {
    return std::clamp<std::size_t>(DatagramQueue::ChunkSize / maximumSize, 1, DatagramBatch::MostDatagrams);
}

/// A machine short of memory will have some again; a pump that gave up would leave the senders waiting.
bool WaitOutShortage(int error) {
    if (error == ENOMEM || error == ENOBUFS)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return error == EINTR || error == ENOMEM || error == ENOBUFS;
}

/// Blocks until a datagram is there and takes what else waits, but drops what is longer than the mailslot
/// takes, by a sender that did not ask; false where the socket is done for.
bool Receive(DatagramBatch& batch, int socket) {
    return batch.Receive(socket, MSG_WAITFORONE) >= 0 || WaitOutShortage(errno);
}

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
    DatagramBatch batch(maximumSize_, BatchSizeFor(maximumSize_));
    // While the queue has no room the datagrams stay in the socket, and senders wait there.
    while (queue_.WaitForRoom() && Receive(batch, socket_.Get()))
        queue_.Append(batch.Texts());
}

}  // namespace tallyhorn
