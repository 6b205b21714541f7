#pragma once

#include <functional>

#include "platform/PendingEvents.h"

namespace tallyhorn {

/// Calls `Event` in place of the pending events.
class FakePendingEvents final : public PendingEvents {
public:
    void Run() override {
        ++Runs;
        if (Event)
            Event();
    }

    std::function<void()> Event;
    int Runs = 0;
};

}  // namespace tallyhorn
