#include "reception/SyslogEndpoint.h"

#include <algorithm>
#include <utility>

#include "records/SyslogFormat.h"

namespace tallyhorn {
namespace {

constexpr std::chrono::milliseconds SliceLength{10};
/// The clock is read only after so many datagrams, because reading it takes a tenth of the time of handling
/// one.
constexpr int DatagramsPerLook = 16;
/// The most bytes of datagrams that wait in a hold outside the DatagramReceiver.
constexpr std::size_t MostHeld = std::size_t{64} << 20U;

DatagramLosses Sum(DatagramLosses some, const DatagramLosses& more) {
    some.NoRoom += more.NoRoom;
    if (more.BySystem)
        some.BySystem = some.BySystem.value_or(0) + *more.BySystem;
    return some;
}

}  // namespace

/// A batch of datagrams.  A datagram without a date gets the time at which the batch began.
class SyslogEndpoint::Batch {
public:
    explicit Batch(SyslogEndpoint& endpoint) : batch_(endpoint.parts_.Gate) {
        endpoint.LookAtTheTime();
        endpoint.flashStarted_ = false;
    }

private:
    Gate::Batch batch_;
};

SyslogEndpoint::SyslogEndpoint(DatagramSockets& sockets, const ReceptionParts& parts,
                               std::function<void()> wake)
    : sockets_(sockets), parts_(parts), wake_(std::move(wake)), queue_(parts.Journal) {}

bool SyslogEndpoint::InitializeWinsock(std::int32_t port) {
    StopListening();
    wscSyslog = sockets_.Listen(port, wake_);
    TellPort();
    return wscSyslog != nullptr;
}

void SyslogEndpoint::Close() {
    StopListening();
    const Batch batch(*this);
    HandleQueue();
    FinishBatch();
}

void SyslogEndpoint::CloseUnhandled() {
    if (wscSyslog == nullptr)
        return;
    wscSyslog->Stop();
    while (const std::optional<std::string_view> datagram = wscSyslog->Next())
        parts_.Journal.Hold(Channel::Syslog, *datagram);
    wscSyslog.reset();
}

void SyslogEndpoint::TakeOver(std::vector<HeldArrival> arrivals) {
    for (HeldArrival& arrival : arrivals) {
        heldBytes_ += arrival.Text.size();
        held_.push_back(std::move(arrival));
    }
    if (!held_.empty())
        wake_();
}

/// Closes the UDP port.  Handles the datagrams that have arrived there, or queues them if the gate does not
/// permit handling them now.
void SyslogEndpoint::StopListening() {
    if (wscSyslog == nullptr)
        return;
    wscSyslog->Stop();
    while (DataArrival() == Waiting::More) {
    }
    QueueWaiting();
    lostBefore_ = Sum(lostBefore_, wscSyslog->Losses());
    wscSyslog.reset();
}

bool SyslogEndpoint::HasWaiting() {
    return !held_.empty() || (wscSyslog != nullptr && wscSyslog->HasWaiting());
}

/// Moves all waiting datagrams into the queue of the pause.
void SyslogEndpoint::QueueWaiting() {
    for (const HeldArrival& arrival : std::exchange(held_, {})) {
        const HandledArrival handled(parts_.Journal, Channel::Syslog, arrival.Number);
        queue_.Add(arrival.Text);
    }
    heldBytes_ = 0;
    if (wscSyslog == nullptr)
        return;
    while (const std::optional<std::string_view> datagram = wscSyslog->Next())
        queue_.Add(*datagram);
}

SyslogEndpoint::Waiting SyslogEndpoint::DataArrival() {
    if (!HasWaiting() && (queue_.Count() == 0 || parts_.Gate.ProcessingPaused()))
        return Waiting::Nothing;
    const Gate::Answer answer = parts_.Gate.Decide(Gate::Request::Datagrams);
    if (answer == Gate::Answer::Later) {
        if (parts_.Gate.Is(Gate::State::Hold))
            HoldWaiting();
        return Waiting::Later;
    }
    if (answer == Gate::Answer::Queue) {
        QueueWaiting();
        TellPort();
        return Waiting::Nothing;
    }
    const Batch batch(*this);
    HandleQueue();
    const bool all = HandleForASlice();
    FinishBatch();
    if (!all)
        return Waiting::More;
    return HasWaiting() ? Waiting::Later : Waiting::Nothing;
}

/// Handles datagrams for about 10 ms.  Returns whether none are left.
bool SyslogEndpoint::HandleForASlice() {
    const Clock::TimePoint end = parts_.Time.Now() + SliceLength;
    if (!HandleHeld(end))
        return false;
    if (wscSyslog == nullptr)
        return true;
    do {
        for (int i = 0; i < DatagramsPerLook; ++i) {
            const std::optional<std::string_view> datagram = wscSyslog->Next();
            if (!datagram)
                return true;
            ProcessSyslogMessage(*datagram);
        }
    } while (parts_.Time.Now() < end);
    return false;
}

/// Handles the datagrams that arrived in a hold, until `end`.  Returns whether none are left.
bool SyslogEndpoint::HandleHeld(Clock::TimePoint end) {
    while (!held_.empty() && parts_.Time.Now() < end) {
        const HeldArrival arrival = std::move(held_.front());
        held_.pop_front();
        heldBytes_ -= arrival.Text.size();
        Handle(arrival);
    }
    return held_.empty();
}

/// Handles a datagram that the journal holds.
void SyslogEndpoint::Handle(const HeldArrival& arrival) {
    const HandledArrival handled(parts_.Journal, Channel::Syslog, arrival.Number);
    ProcessSyslogMessage(arrival.Text);
}

/// Gives datagrams that must wait to the journal for about 10 ms, so that a crash during the hold does not
/// lose them.
void SyslogEndpoint::HoldWaiting() {
    const Clock::TimePoint end = parts_.Time.Now() + SliceLength;
    while (wscSyslog != nullptr && heldBytes_ < MostHeld && parts_.Time.Now() < end) {
        const std::optional<std::string_view> datagram = wscSyslog->Next();
        if (!datagram)
            return;
        heldBytes_ += datagram->size();
        held_.push_back({parts_.Journal.Hold(Channel::Syslog, *datagram), std::string(*datagram)});
    }
}

void SyslogEndpoint::ProcessQueuedSyslogMessages() {
    if (queue_.Count() == 0)
        return;
    // The end of a hold or a batch does not call this function again.  Therefore a call of DataArrival is
    // requested; ArrivalTimer repeats it as long as it returns Later.
    if (parts_.Gate.Decide(Gate::Request::Datagrams) == Gate::Answer::Later) {
        wake_();
        return;
    }
    const Batch batch(*this);
    HandleQueue();
    FinishBatch();
}

void SyslogEndpoint::HandleQueue() {
    for (const HeldArrival& arrival : queue_.Take()) {
        Handle(arrival);
        if (parts_.Slices.LetRun())
            LookAtTheTime();
    }
}

/// Lets events run before the batch ends, so that the views show the batch's rows before the next batch
/// begins.
void SyslogEndpoint::FinishBatch() {
    parts_.Received.UpdateStatusCounts(parts_.Received.Syslog);
    parts_.Received.UpdateListViewStatus();
    TellPort();
    parts_.Slices.RunNow();
}

void SyslogEndpoint::ProcessSyslogMessage(std::string_view message) {
    ++receivedCount_;
    if (!IsAlarmNotification(message))
        return;
    // Called before the filters, because a suppressed notification makes the icon flash too.  Called
    // only once a batch, because a call is expensive: it may ask the desktop to mark the window's entry in
    // the task bar.
    if (!flashStarted_ && !parts_.Display.IsVisible()) {
        flashStarted_ = true;
        parts_.Signals.StartFlash();
    }
    // Drops NULs, because the backup file cannot contain them.
    if (message.find('\0') != std::string_view::npos) {
        withoutNuls_ = message;
        std::erase(withoutNuls_, '\0');
        message = withoutNuls_;
    }
    ParseSyslogText(message, parts_.Received.DayFirst(), now_, parts_.CurrentAlarm);
    if (parts_.Filters.IsSuppressed(parts_.CurrentAlarm))
        return;
    const bool shown = parts_.ViewFilter.PassesViewFilter(parts_.CurrentAlarm);
    parts_.Received.KeepSyslogMessage(parts_.CurrentAlarm, shown);
    parts_.Signals.PlayAlertSound();
}

void SyslogEndpoint::LookAtTheTime() {
    now_ = AlarmDate{parts_.Time.LocalSeconds()};
}

void SyslogEndpoint::TellPort() {
    std::string text = "Not listening for syslog messages";
    DatagramLosses losses = lostBefore_;
    if (wscSyslog != nullptr) {
        text = "Listening on UDP port ";
        text += std::to_string(wscSyslog->Port());
        losses = Sum(losses, wscSyslog->Losses());
    }
    losses.NoRoom += queue_.Lost();
    if (losses.NoRoom > 0)
        text.append("\n").append(std::to_string(losses.NoRoom)).append(" datagram(s) lost for want of room");
    if (losses.BySystem.value_or(0) > 0)
        text.append("\n").append(std::to_string(*losses.BySystem)).append(" datagram(s) lost by the system");
    if (text == toolTip_)
        return;
    toolTip_ = std::move(text);
    parts_.Display.ShowPanelToolTip(StatusPanel::SyslogCount, toolTip_);
}

}  // namespace tallyhorn
