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

/// Listens for syslog datagrams and turns those that are notifications into kept messages.  User-interface
/// thread only; events may run in the middle of its work, and with them another arrival.
class SyslogEndpoint {
public:
    /// `wake` is called from another thread when datagrams have come: DataArrival is to be called then.
    SyslogEndpoint(DatagramSockets& sockets, const ReceptionParts& parts, std::function<void()> wake);

    /// Listens at `port` from now on and no longer at the one before, whose waiting datagrams are handled
    /// first; 0 lets the system choose.  False where the system does not bind it: then nothing is listened
    /// to.
    bool InitializeWinsock(std::int32_t port);
    /// Listens no more and handles what has come, what a pause holds back too.
    void Close();

    /// What is left: nothing, more than one slice could handle, or what will be handled later, because it
    /// came meanwhile or is held back.
    enum class Waiting { Nothing, More, Later };
    /// Handles what has come, for about 10 ms; queues it during a pause; leaves it where it is while messages
    /// are being taken away or another arrival is at work.
    Waiting DataArrival();
    /// The end of a pause: handles what has come in it.
    void ProcessQueuedSyslogMessages();

    /// Datagrams handled since the start, whatever they were.
    std::uint64_t ReceivedCount() const { return receivedCount_; }

private:
    class Busy;

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
    std::unique_ptr<DatagramReceiver> wscSyslog;  ///< null where nothing is listened to
    SyslogQueue queue_;
    AlarmDate now_;  ///< at the beginning of the slice of work at hand
    bool busy_ = false;
    std::uint64_t receivedCount_ = 0;
    DatagramLosses lostBefore_;  ///< at ports that are no longer listened to
    std::string toolTip_;
    std::string withoutNuls_;
};

}  // namespace tallyhorn
