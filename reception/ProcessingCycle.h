#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "filters/SuppressionFilters.h"
#include "reception/ArrivalSignals.h"
#include "reception/cvbMailslot.h"
#include "records/AlarmRecord.h"
#include "views/ReceivedMessages.h"
#include "views/ViewFilterState.h"

namespace tallyhorn {

/// Moves NetBIOS notifications from the mailslot into the views, and pauses and resumes both channels.
/// User-interface thread only; events may run in the middle of a batch, and with them another tick.
class ProcessingCycle {
public:
    /// What the cycle works on; all of it outlives the cycle.
    struct Parts {
        cvbMailslot& Mailslot;
        SuppressionFilters& Filters;
        const ViewFilterState& ViewFilter;
        ReceivedMessages& Received;
        ServerDisplay& Display;
        ArrivalSignals& Signals;
        TimeSlices& Slices;
        AlarmRecord& CurrentAlarm;
    };

    explicit ProcessingCycle(const Parts& parts) : parts_(parts) {}

    /// One poll: all that waits is read, and what no filter suppresses is kept and shown.
    void TimCheckTick();

    /// Pauses, or resumes where the pause command shows a pause.
    void PauseCommand();
    /// One second of a pause; the 121st resumes.
    void ResumeTick();

    /// While true, nothing is processed.  The syslog endpoint raises it for its own work too, so that it may
    /// differ from what the pause command shows.
    bool ProcessingPaused = false;

    /// Texts that the mailslot gave since the start, the suppressed ones included.
    std::uint64_t ReceivedCount() const { return receivedCount_; }

private:
    void ProcessText(std::string& text);
    Slot TakeNetBiosSlot();

    Parts parts_;
    bool pauseShown_ = false;
    std::int32_t resumeTicks_ = 0;
    std::uint64_t receivedCount_ = 0;
    std::vector<std::string> spareMessages_;  ///< between batches: its memory serves the next one
};

}  // namespace tallyhorn
