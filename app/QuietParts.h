#pragma once

#include "reception/ArrivalSignals.h"

namespace tallyhorn {

/// Arrivals are neither heard nor seen outside the window.
class QuietSignals final : public ArrivalSignals {
public:
    void PlayAlertSound() override {}
    void StartFlash() override {}
};

}  // namespace tallyhorn
