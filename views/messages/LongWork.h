#pragma once

#include <cstdint>

#include "platform/TimeSlices.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// Counts the steps of a long piece of work: shows the user that it is under way as long as it lives, and how
/// far it has come whenever events have run.  User-interface thread only.
class LongWork {
public:
    LongWork(ServerDisplay& display, TimeSlices& slices, std::uint64_t total)
        : display_(display), slices_(slices), total_(total) {
        display_.BeginWork();
    }
    ~LongWork() { display_.EndWork(); }
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    /// Called after so many steps, which lets events run where the slice was over, and tells whether they
    /// did.  Not after every short one: a look at the clock costs as much.
    bool Advance(std::uint64_t steps = 1) {
        done_ += steps;
        if (!slices_.LetRun())
            return false;
        display_.ShowProgress(done_, total_);
        return true;
    }

private:
    ServerDisplay& display_;
    TimeSlices& slices_;
    const std::uint64_t total_;
    std::uint64_t done_ = 0;
};

}  // namespace tallyhorn
