#pragma once

#include "filters/SuppressionFilters.h"
#include "reception/ArrivalSignals.h"
#include "views/messages/MessageContext.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// The objects that both channels use.  They must outlive the channels.
struct ReceptionParts : MessageContext {
    SuppressionFilters& Filters;
    const ViewFilterState& ViewFilter;
    ArrivalSignals& Signals;
};

}  // namespace tallyhorn
