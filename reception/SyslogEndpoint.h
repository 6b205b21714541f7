#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DatagramSockets.h"
#include "reception/ReceptionParts.h"
#include "reception/SyslogQueue.h"

namespace tallyhorn {

/// Listens for syslog datagrams and keeps those that are notifications.  Other datagrams are only counted.
/// Events may run in the middle of a batch, and one of them may be the next arrival.
class SyslogEndpoint {
public:
    /// `wake` requests a call of DataArrival.  It is called on the pump thread when datagrams have arrived,
    /// and on the user-interface thread by ProcessQueuedSyslogMessages.
    SyslogEndpoint(DatagramSockets& sockets, const ReceptionParts& parts, std::function<void()> wake);

    /// Handles the datagrams that wait at the current UDP port, closes that port and listens at `port`; if
    /// `port` is 0, the system chooses one.  Returns false if `port` cannot be bound, and then listens at no
    /// port.
    bool InitializeWinsock(std::int32_t port);
    /// Returns the UDP port at which it listens, or nothing if it listens at none.
    std::optional<std::int32_t> ListeningPort() const {
        return wscSyslog != nullptr ? std::optional<std::int32_t>(wscSyslog->Port()) : std::nullopt;
    }
    /// Stops listening and handles all datagrams that have arrived, including those that a pause has queued.
    void Close();
    /// Stops listening and leaves all datagrams that have arrived to the journal, which returns them to the
    /// next run.  For an end before the messages of the previous run have been restored.
    void CloseUnhandled();
    /// Adds datagrams that waited when the previous run ended.  They are handled before newer ones.
    void TakeOver(std::vector<HeldArrival> arrivals);

    /// What waits after a call of DataArrival: nothing; more datagrams than the slice could handle; or
    /// datagrams to be handled later, because they arrived during the slice or the gate answers Later.
    enum class Waiting { Nothing, More, Later };
    /// Handles waiting datagrams for about 10 ms, queues them during a pause, or leaves them in the
    /// DatagramInbox, as the gate decides.
    Waiting DataArrival();
    /// Handles the datagrams that a pause has queued.  To be called at the end of the pause.
    void ProcessQueuedSyslogMessages();

    /// Returns how many datagrams have been handled since the start, notifications or not.
    std::uint64_t ReceivedCount() const { return receivedCount_; }

private:
    class Batch;

    void StopListening();
    bool HasWaiting();
    void QueueWaiting();
    void LookAtTheTime();
    bool HandleForASlice();
    bool HandleHeld(Clock::TimePoint end);
    void HandleQueue();
    void HoldWaiting();
    void Handle(const HeldArrival& arrival);
    void ProcessSyslogMessage(std::string_view message);
    void FinishBatch();
    void TellPort();

    DatagramSockets& sockets_;
    ReceptionParts parts_;
    const std::function<void()> wake_;
    std::unique_ptr<DatagramReceiver> wscSyslog;  ///< null if no port is open
    SyslogQueue queue_;
    std::deque<HeldArrival> held_;  ///< datagrams that arrived in a hold, older than those in `wscSyslog`
    std::size_t heldBytes_ = 0;     ///< the sum of their sizes
    AlarmDate now_;                 ///< the local time when the batch began or when events last ran in it
    std::uint64_t receivedCount_ = 0;
    DatagramLosses lostBefore_;  ///< the losses at the UDP ports that were open earlier
    std::string toolTip_;
    std::string withoutNuls_;
    bool flashStarted_ = false;  ///< whether the current batch has started the flash
};

}  // namespace tallyhorn
