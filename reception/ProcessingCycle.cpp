#include "reception/ProcessingCycle.h"

#include <utility>
#include <vector>

#include "records/NetBiosFormat.h"

namespace tallyhorn {
namespace {

constexpr std::int32_t TicksUntilResume = 120;

}  // namespace

void ProcessingCycle::TimCheckTick() {
    if (!parts_.Gate.AdmitPoll() || mailslot_.CheckForMessages() == 0)
        return;
    // The vector is moved out of the member, because a nested poll must not overwrite its texts.
    std::vector<std::string> messages = std::exchange(spareMessages_, {});
    const std::int16_t count = mailslot_.ReadMessages(messages);
    if (count > 0) {
        parts_.Signals.PlayAlertSound();
        if (!parts_.Display.IsVisible())
            parts_.Signals.StartFlash();
    }
    receivedCount_ += static_cast<std::uint64_t>(count);
    for (std::size_t i = 1; i <= static_cast<std::size_t>(count); ++i)
        ProcessText(messages[i]);
    spareMessages_ = std::move(messages);
    parts_.Received.UpdateStatusCounts(parts_.Received.NetBios);
    parts_.Received.UpdateListViewStatus();
    parts_.Slices.RunNow();
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
