#pragma once

#include "filters/SuppressionFilters.h"
#include "platform/Clock.h"
#include "reception/ArrivalSignals.h"
#include "records/AlarmRecord.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// What both channels work on.  All of it outlives them.
struct ReceptionParts {
    SuppressionFilters& Filters;
    const ViewFilterState& ViewFilter;
    ReceivedMessages& Received;
    ServerDisplay& Display;
    ArrivalSignals& Signals;
    TimeSlices& Slices;
    const Clock& Time;
    /// The record of the text that was read last, of either channel.  Compatibility: a field that a text does
    /// not set keeps the value of the text before.
    AlarmRecord& CurrentAlarm;
};

}  // namespace tallyhorn
