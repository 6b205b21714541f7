#pragma once

#include "reception/ArrivalSignals.h"
#include "views/ViewFilterState.h"

namespace tallyhorn {

/// Arrivals are neither heard nor seen outside the window.
class QuietSignals final : public ArrivalSignals {
public:
    void PlayAlertSound() override {}
    void StartFlash() override {}
};

/// No view filter is ever in force.
class NoViewFilter final : public ViewFilterState {
public:
    bool InForce() const override { return false; }
    bool PassesViewFilter(const AlarmRecord& /*alarm*/) const override { return true; }
};

}  // namespace tallyhorn
