#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/DatagramSockets.h"
#include "reception/ReceptionParts.h"
#include "reception/SyslogQueue.h"

namespace tallyhorn {

/// Listens for syslog datagrams and keeps those that are notifications.  Events may run in the middle of a
/// batch, and one of them may be the next arrival.
class SyslogEndpoint {
public:
    /// `wake` asks for a call of DataArrival.  It is called on the pump thread when datagrams have arrived.
    SyslogEndpoint(DatagramSockets& sockets, const ReceptionParts& parts, std::function<void()> wake);

    /// Handles what waits at the UDP port listened to so far, and listens at `port` instead; 0 lets the
    /// system choose one.  Returns false if the system cannot bind it, and then listens nowhere.
    bool InitializeWinsock(std::int32_t port);
    /// Stops listening and handles all that has arrived, including what a pause has queued.
    void Close();

    /// What waits after a call: nothing, more than one slice could handle, or datagrams that are to be
    /// handled later, because they arrived during the slice or the gate does not let them in yet.
    enum class Waiting { Nothing, More, Later };
    /// Handles waiting datagrams for about 10 ms, queues them during a pause, or leaves them in the pump's
    /// queue, as the gate decides.
    Waiting DataArrival();
    /// Handles what a pause has queued, at its end.
    void ProcessQueuedSyslogMessages();

    /// Returns how many datagrams have been handled since the start, notifications or not.
    std::uint64_t ReceivedCount() const { return receivedCount_; }

private:
    class Batch;

    Gate& TheGate() const { return parts_.Received.Gate(); }
    void StopListening();
    bool HasWaiting();
    void QueueWaiting();
    void LookAtTheTime();
    bool HandleForASlice();
    void HandleQueue();
    void ProcessSyslogMessage(std::string_view message);
    void FinishBatch();
    void TellPort();

    DatagramSockets& sockets_;
    ReceptionParts parts_;
    const std::function<void()> wake_;
    std::unique_ptr<DatagramReceiver> wscSyslog;  ///< null while it listens nowhere
    SyslogQueue queue_;
    AlarmDate now_;  ///< when the current batch began, or its last slice
    std::uint64_t receivedCount_ = 0;
    DatagramLosses lostBefore_;  ///< at the UDP ports listened to before
    std::string toolTip_;
    std::string withoutNuls_;
};

}  // namespace tallyhorn
