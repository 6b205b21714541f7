#pragma once

namespace tallyhorn {

/// How the desktop tells of arrivals.  Called from the user-interface thread; returns at once.
class ArrivalSignals {
public:
    virtual ~ArrivalSignals() = default;
    virtual void PlayAlertSound() = 0;
    /// Starts the notification-area icon flashing; a flash that runs goes on.
    virtual void StartFlash() = 0;
};

}  // namespace tallyhorn
