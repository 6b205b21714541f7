#pragma once

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// What other parts of the console need to know of the view filter.
class ViewFilterState {
public:
    virtual ~ViewFilterState() = default;
    virtual bool InForce() const = 0;
    /// Returns true for every alarm while no view filter is in force.
    virtual bool PassesViewFilter(const AlarmRecord& alarm) const = 0;
};

}  // namespace tallyhorn
