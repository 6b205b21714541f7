#pragma once

#include "filters/SuppressionFilters.h"
#include "reception/ArrivalSignals.h"
#include "views/messages/ArrivalJournal.h"
#include "views/messages/MessageContext.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// The objects that ProcessingCycle and SyslogEndpoint use.  They must outlive both.
struct ReceptionParts : MessageContext {
    SuppressionFilters& Filters;
    const ViewFilterState& ViewFilter;
    ArrivalSignals& Signals;
    ArrivalJournal& Journal;
};

}  // namespace tallyhorn
