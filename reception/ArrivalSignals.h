#pragma once

namespace tallyhorn {

/// The port through which arrivals are signalled to the user.  Its functions return at once.
class ArrivalSignals {
public:
    virtual ~ArrivalSignals() = default;
    virtual void PlayAlertSound() = 0;
    /// Makes the notification-area icon flash; does nothing if it is already flashing.
    virtual void StartFlash() = 0;
};

}  // namespace tallyhorn
