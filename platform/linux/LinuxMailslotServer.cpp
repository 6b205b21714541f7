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

/// Returns the number of datagrams in a batch, chosen so that their buffers together occupy at most the size
/// of one chunk.  More buffers would seldom be used: a socket holds only few datagrams (10 by default).
std::size_t BatchSizeFor(std::size_t maximumSize) {
    return std::clamp<std::size_t>(DatagramQueue::ChunkSize / maximumSize, 1, DatagramBatch::MostDatagrams);
}

/// Returns whether to try again after `error`.  If the system is short of memory, first waits for 10 ms.  If
/// the pump gave up instead, the senders would stay blocked.
bool WaitOutShortage(int error) {
    if (error == ENOMEM || error == ENOBUFS)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return error == EINTR || error == ENOMEM || error == ENOBUFS;
}

/// Blocks until a datagram arrives, and receives it and any others that are waiting.  Drops datagrams longer
/// than the mailslot's maximum: a sender that ignores the maximum can send them.  Returns false if the socket
/// has failed or was shut down.
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
    // Ends a blocked receive of the pump thread, and makes the writes of blocked senders fail.
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
    // SCHED_BATCH lets the thread start a little later after a wake-up, so that each wake-up finds more
    // datagrams: a wake-up costs more than reading one.  If the call fails, the pump only uses more processor
    // time.
    const sched_param noPriority{};
    pthread_setschedparam(pthread_self(), SCHED_BATCH, &noPriority);
    DatagramBatch batch(maximumSize_, BatchSizeFor(maximumSize_));
    // While the queue is full, datagrams stay in the socket and senders block.
    while (queue_.WaitForRoom() && Receive(batch, socket_.Get()))
        queue_.Append(batch.Texts());
}

}  // namespace tallyhorn
