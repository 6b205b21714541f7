#pragma once

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// The view filter as the rest of the console sees it.  User-interface thread only.
class ViewFilterState {
public:
    virtual ~ViewFilterState() = default;
    virtual bool InForce() const = 0;
    /// True for every alarm while no view filter is in force.
    virtual bool PassesViewFilter(const AlarmRecord& alarm) const = 0;
};

}  // namespace tallyhorn
