#pragma once

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// The state of the view filter that other parts of the console need.
class ViewFilterState {
public:
    virtual ~ViewFilterState() = default;
    virtual bool InForce() const = 0;
    /// Returns true for every alarm while no view filter is in force.
    virtual bool PassesViewFilter(const AlarmRecord& alarm) const = 0;
};

}  // namespace tallyhorn
