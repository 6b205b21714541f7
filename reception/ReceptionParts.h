#pragma once

#include "filters/SuppressionFilters.h"
#include "platform/Clock.h"
#include "reception/ArrivalSignals.h"
#include "records/AlarmRecord.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// What both channels work on; all of it outlives them.  User-interface thread only.
struct ReceptionParts {
    SuppressionFilters& Filters;
    const ViewFilterState& ViewFilter;
    ReceivedMessages& Received;
    ServerDisplay& Display;
    ArrivalSignals& Signals;
    TimeSlices& Slices;
    const Clock& Time;
    /// The alarm that was read last, from whichever channel: a field that a text does not set keeps its
    /// value.
    AlarmRecord& CurrentAlarm;
    /// While true, nothing is processed.  The pause command raises it, and so does the syslog endpoint for
    /// its own work, so that it may differ from what the pause command shows.
    bool& ProcessingPaused;
};

}  // namespace tallyhorn
