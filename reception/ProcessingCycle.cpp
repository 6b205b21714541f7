#include "reception/ProcessingCycle.h"

#include <utility>
#include <vector>

#include "records/NetBiosFormat.h"

namespace tallyhorn {
namespace {

constexpr std::int32_t TicksUntilResume = 120;
/// The most bytes of texts that wait outside the mailslot.  More texts stay in the mailslot.
constexpr std::size_t MostHeld = std::size_t{64} << 20U;

}  // namespace

void ProcessingCycle::TimCheckTick() {
    if (!parts_.Gate.AdmitPoll()) {
        if (parts_.Gate.Is(Gate::State::Pause) || parts_.Gate.Is(Gate::State::Hold))
            HoldWaiting();
        return;
    }
    const bool waiting = mailslot_.CheckForMessages() != 0;
    if (!waiting && held_.empty())
        return;
    // The vectors are moved out of the members, because a nested poll must not overwrite their texts.
    std::vector<HeldArrival> held = std::exchange(held_, {});
    heldBytes_ = 0;
    std::vector<std::string> messages = std::exchange(spareMessages_, {});
    const auto count = static_cast<std::size_t>(waiting ? mailslot_.ReadMessages(messages) : 0);
    if (count + held.size() > 0) {
        parts_.Signals.PlayAlertSound();
        if (!parts_.Display.IsVisible())
            parts_.Signals.StartFlash();
    }
    receivedCount_ += count + held.size();
    for (HeldArrival& arrival : held) {
        const HandledArrival handled(parts_.Journal, Channel::NetBios, arrival.Number);
        ProcessText(arrival.Text);
    }
    for (std::size_t i = 1; i <= count; ++i)
        ProcessText(messages[i]);
    spareMessages_ = std::move(messages);
    parts_.Received.UpdateStatusCounts(parts_.Received.NetBios);
    parts_.Received.UpdateListViewStatus();
    parts_.Slices.RunNow();
}

void ProcessingCycle::HoldWaiting() {
    if (heldBytes_ >= MostHeld || mailslot_.CheckForMessages() == 0)
        return;
    const auto count = static_cast<std::size_t>(mailslot_.ReadMessages(spareMessages_));
    for (std::size_t i = 1; i <= count; ++i) {
        std::string& text = spareMessages_[i];
        heldBytes_ += text.size();
        const std::uint64_t number = parts_.Journal.Hold(Channel::NetBios, text);
        held_.push_back({number, std::move(text)});
    }
}

void ProcessingCycle::TakeOver(std::vector<HeldArrival> arrivals) {
    held_ = std::move(arrivals);
    for (const HeldArrival& arrival : held_)
        heldBytes_ += arrival.Text.size();
}

void ProcessingCycle::MissedTick() {
    if (parts_.Gate.PollIsMissed())
        TimCheckTick();
}

void ProcessingCycle::ProcessText(std::string& text) {
    ParseCurrentAlarm(text, parts_.CurrentAlarm);
    if (parts_.Filters.IsSuppressed(parts_.CurrentAlarm))
        return;
    const bool shown = parts_.ViewFilter.PassesViewFilter(parts_.CurrentAlarm);
    parts_.Received.KeepNetBiosMessage(std::move(text), parts_.CurrentAlarm, shown);
}

void ProcessingCycle::PauseCommand() {
    const bool paused = parts_.Gate.TogglePause();
    parts_.Display.ShowPauseCommand(paused);
    parts_.Display.ShowPanel(StatusPanel::ProcessingStatus,
                             paused ? "Status: Message Processing Paused" : "Status: Processing Messages");
    resumeTicks_ = 0;
    parts_.Display.EnableResumeTimer(paused);
    if (!paused)
        syslog_.ProcessQueuedSyslogMessages();
}

void ProcessingCycle::ResumeTick() {
    if (resumeTicks_ < TicksUntilResume)
        ++resumeTicks_;
    else
        PauseCommand();
}

}  // namespace tallyhorn
