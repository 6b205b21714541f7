#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reception/ReceptionParts.h"
#include "reception/SyslogEndpoint.h"
#include "reception/cvbMailslot.h"

namespace tallyhorn {

/// Moves NetBIOS notifications from the mailslot into the views, and pauses and resumes both channels.
/// User-interface thread only; events may run in the middle of a batch, and with them another tick.
class ProcessingCycle {
public:
    /// All of it outlives the cycle.
    ProcessingCycle(cvbMailslot& mailslot, SyslogEndpoint& syslog, const ReceptionParts& parts)
        : mailslot_(mailslot), syslog_(syslog), parts_(parts) {}

    /// One poll: all that waits is read, and what no filter suppresses is kept and shown.  Nothing in a pause
    /// and while either channel holds the other back.
    void TimCheckTick();
    /// Makes up for a poll that fell into such a time, as all of them may in a syslog storm.
    void MissedTick();

    /// Pauses, or resumes where the pause command shows a pause; then what syslog brought meanwhile is
    /// handled.
    void PauseCommand();
    /// One second of a pause; the 121st resumes.
    void ResumeTick();

    /// Texts that the mailslot gave since the start, the suppressed ones included.
    std::uint64_t ReceivedCount() const { return receivedCount_; }

private:
    void ProcessText(std::string& text);

    cvbMailslot& mailslot_;
    SyslogEndpoint& syslog_;
    ReceptionParts parts_;
    bool pauseShown_ = false;
    bool missedTick_ = false;
    std::int32_t resumeTicks_ = 0;
    std::uint64_t receivedCount_ = 0;
    std::vector<std::string> spareMessages_;  ///< between batches: its memory serves the next one
};

}  // namespace tallyhorn
