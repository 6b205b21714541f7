#pragma once

#include "platform/Clock.h"
#include "platform/PendingEvents.h"

namespace tallyhorn {

/// Divides long work into slices of 10 ms, after each of which the pending window events run: often enough
/// for the window to respond at once, and seldom enough not to slow the work.  Example:
///
///     for (const std::string& text : batch) {
///         Handle(text);
///         slices.LetRun();
///     }
///     slices.RunNow();
///
/// An event may itself call these functions.
class TimeSlices {
public:
    TimeSlices(const Clock& clock, PendingEvents& events);

    /// Runs the pending events if 10 ms have passed since they last ran, and returns whether it ran them.
    /// Call it after each small step of the work.
    bool LetRun();
    /// Runs the pending events at once, for example at the end of a batch.
    void RunNow();

private:
    const Clock& clock_;
    PendingEvents& events_;
    Clock::TimePoint sliceStart_;
};

}  // namespace tallyhorn
