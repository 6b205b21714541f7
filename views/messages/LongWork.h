#pragma once

#include <cstdint>

#include "platform/TimeSlices.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// Shows the user that long work is running while this object exists, and its progress after each slice.
class LongWork {
public:
    LongWork(ServerDisplay& display, TimeSlices& slices, std::uint64_t total)
        : display_(display), slices_(slices), total_(total) {
        display_.BeginWork();
    }
    ~LongWork() { display_.EndWork(); }
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    /// Counts `steps` as done.  Runs pending events if the slice is over, and returns whether it ran them. If
    /// the steps are short, call it only after several of them, because it reads the clock.
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
