#pragma once

#include "filters/SuppressionFilters.h"
#include "reception/ArrivalSignals.h"
#include "views/messages/MessageContext.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// What both channels work with. All of it outlives them.
struct ReceptionParts : MessageContext {
    SuppressionFilters& Filters;
    const ViewFilterState& ViewFilter;
    ArrivalSignals& Signals;
};

}  // namespace tallyhorn
