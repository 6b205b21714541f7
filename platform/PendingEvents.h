#pragma once

namespace tallyhorn {

/// The port through which long work runs the pending window events: timers, clicks, repainting.  TimeSlices
/// decides how often.  The events may start further work.
class PendingEvents {
public:
    virtual ~PendingEvents() = default;
    virtual void Run() = 0;
};

}  // namespace tallyhorn
