#pragma once

#include <string>

#include "reception/ArrivalSignals.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// While it is active, passes only the alarms of one computer.
class FakeViewFilter final : public ViewFilterState {
public:
    bool InForce() const override { return Active; }
    bool PassesViewFilter(const AlarmRecord& alarm) const override {
        return !Active || alarm.Computer == Computer;
    }

    bool Active = false;
    std::string Computer;
};

class FakeSignals final : public ArrivalSignals {
public:
    void PlayAlertSound() override { ++Sounds; }
    void StartFlash() override { ++Flashes; }

    int Sounds = 0;
    int Flashes = 0;
};

}  // namespace tallyhorn
