#include "platform/TimeSlices.h"

namespace tallyhorn {
namespace {

constexpr std::chrono::milliseconds SliceLength{10};

}  // namespace

TimeSlices::TimeSlices(const Clock& clock, PendingEvents& events)
    : clock_(clock), events_(events), sliceStart_(clock.Now()) {}

bool TimeSlices::LetRun() {
    if (clock_.Now() - sliceStart_ < SliceLength)
        return false;
    RunNow();
    return true;
}

void TimeSlices::RunNow() {
    events_.Run();
    sliceStart_ = clock_.Now();
}

}  // namespace tallyhorn
