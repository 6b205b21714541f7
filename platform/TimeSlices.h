#pragma once

#include "platform/Clock.h"
#include "platform/PendingEvents.h"

namespace tallyhorn {

/// Decides how often long work lets pending window events run: after every 10 ms of it, so that a flood is
/// not slowed by repainting and the window still answers at once.  User-interface thread only; events that
/// run inside may start work of their own and come back here.
class TimeSlices {
public:
    TimeSlices(const Clock& clock, PendingEvents& events);

    /// Called after each small step of work; true when the slice was over and events ran.
    bool LetRun();
    /// Lets events run whatever the time, at the end of a batch.
    void RunNow();

private:
    const Clock& clock_;
    PendingEvents& events_;
    Clock::TimePoint sliceStart_;
};

}  // namespace tallyhorn
