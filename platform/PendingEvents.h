#pragma once

namespace tallyhorn {

/// Lets window events that wait run now, whatever they lead to: timer ticks, clicks, repainting.
/// Called from the user-interface thread in the middle of long work; TimeSlices says how often.
class PendingEvents {
public:
    virtual ~PendingEvents() = default;
    virtual void Run() = 0;
};

}  // namespace tallyhorn
