#include "reception/SyslogEndpoint.h"

#include <algorithm>
#include <utility>

#include "records/AnsiText.h"
#include "records/SyslogFormat.h"

namespace tallyhorn {
namespace {

constexpr std::chrono::milliseconds SliceLength{10};
/// A look at the clock costs a tenth of a datagram.
constexpr int DatagramsPerLook = 16;

DatagramLosses Sum(DatagramLosses some, const DatagramLosses& more) {
    some.NoRoom += more.NoRoom;
    if (more.BySystem)
        some.BySystem = some.BySystem.value_or(0) + *more.BySystem;
    return some;
}

}  // namespace

/// Work during which both channels hold back, as in a pause.
class SyslogEndpoint::Busy {
public:
    explicit Busy(SyslogEndpoint& endpoint) : endpoint_(endpoint) {
        endpoint_.busy_ = true;
        endpoint_.parts_.ProcessingPaused = true;
        endpoint_.now_ = AlarmDate{endpoint_.parts_.Time.LocalSeconds()};
    }
    ~Busy() {
        endpoint_.parts_.ProcessingPaused = false;
        endpoint_.busy_ = false;
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    SyslogEndpoint& endpoint_;
};

SyslogEndpoint::SyslogEndpoint(DatagramSockets& sockets, const ReceptionParts& parts,
                               std::function<void()> wake)
    : sockets_(sockets), parts_(parts), wake_(std::move(wake)) {}

bool SyslogEndpoint::InitializeWinsock(std::int32_t port) {
    Drain();
    receiver_ = sockets_.Listen(port, wake_);
    TellPort();
    return receiver_ != nullptr;
}

void SyslogEndpoint::Close() {
    Drain();
    const Busy busy(*this);
    HandleQueue();
    FinishBatch();
}

/// Lets go of the port.  What has come through it is handled, or queued in a pause.
void SyslogEndpoint::Drain() {
    if (receiver_ == nullptr)
        return;
    receiver_->Stop();
    while (DataArrival() == Waiting::More) {
    }
    lostBefore_ = Sum(lostBefore_, receiver_->Losses());
    receiver_.reset();
}

SyslogEndpoint::Waiting SyslogEndpoint::DataArrival() {
    if (receiver_ == nullptr || !receiver_->HasWaiting())
        return Waiting::Nothing;
    if (busy_ || parts_.Received.SyslogDeleteInProgress)
        return Waiting::Later;
    if (parts_.ProcessingPaused) {
        while (const std::optional<std::string_view> datagram = receiver_->Next())
            queue_.Add(*datagram);
        TellPort();
        return Waiting::Nothing;
    }
    const Busy busy(*this);
    if (!parts_.Display.IsVisible())
        parts_.Signals.StartFlash();
    HandleQueue();
    const bool all = HandleForASlice();
    FinishBatch();
    if (!all)
        return Waiting::More;
    return receiver_->HasWaiting() ? Waiting::Later : Waiting::Nothing;
}

/// True where nothing was left at the end.
bool SyslogEndpoint::HandleForASlice() {
    const Clock::TimePoint end = parts_.Time.Now() + SliceLength;
    do {
        for (int i = 0; i < DatagramsPerLook; ++i) {
            const std::optional<std::string_view> datagram = receiver_->Next();
            if (!datagram)
                return true;
            ProcessSyslogMessage(*datagram);
        }
    } while (parts_.Time.Now() < end);
    return false;
}

void SyslogEndpoint::ProcessQueuedSyslogMessages() {
    if (queue_.Count() == 0 || busy_)
        return;
    if (!parts_.Display.IsVisible())
        parts_.Signals.StartFlash();
    const Busy busy(*this);
    HandleQueue();
    FinishBatch();
}

void SyslogEndpoint::HandleQueue() {
    for (const std::string& text : queue_.Take()) {
        ProcessSyslogMessage(text);
        parts_.Slices.LetRun();
    }
}

/// The views take in what came while arrivals are still held back.
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
    // No text of the console's holds a NUL: the backup could not keep it.
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

void SyslogEndpoint::RestoreBackupMessage(std::string_view text) {
    if (Trim(text).empty())
        return;
    now_ = AlarmDate{parts_.Time.LocalSeconds()};
    ReadStoredText(text, parts_.Received.DayFirst(), now_, parts_.CurrentAlarm);
    parts_.Received.KeepSyslogMessage(parts_.CurrentAlarm, true);
}

void SyslogEndpoint::TellPort() {
    std::string text = "Not listening for syslog messages";
    DatagramLosses losses = lostBefore_;
    if (receiver_ != nullptr) {
        text = "Listening on UDP port ";
        text += std::to_string(receiver_->Port());
        losses = Sum(losses, receiver_->Losses());
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
