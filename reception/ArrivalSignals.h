#pragma once

namespace tallyhorn {

/// The port through which arrivals are signalled to the user.  Its functions return at once.
class ArrivalSignals {
public:
    virtual ~ArrivalSignals() = default;
    virtual void PlayAlertSound() = 0;
    /// Lets the notification-area icon flash; does nothing if it flashes already.
    virtual void StartFlash() = 0;
};

}  // namespace tallyhorn
