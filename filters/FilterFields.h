#pragma once

#include <cstdint>
#include <string>

#include "filters/SuppressionFilter.h"
#include "records/AlarmDate.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// A suppression filter as it is typed: texts of any length, the event id a text too, dates to the second.
/// A plain value, safe in any thread.
struct FilterFields {
    std::string FilterName;
    std::string Source;
    std::string Category;
    std::string AccountName;
    std::string Computer;
    std::string EventID;          ///< empty for any
    std::int32_t EventTypes = 0;  ///< FilterEventTypes
    bool UseDateRange = false;
    AlarmDate BeginDate;  ///< means nothing without UseDateRange, as does EndDate
    AlarmDate EndDate;

    bool operator==(const FilterFields&) const = default;
};

/// The dates that can be typed.
inline constexpr AlarmDate FirstTypedDate{-59'011'459'200};
inline constexpr AlarmDate LastTypedDate{253'402'300'799};

/// What is shown of a record that is to be edited: texts without NULs and blanks around, as matching reads
/// them, and dates within those that can be typed.
FilterFields ShowRecord(const SuppressionFilter& record);

/// Puts the fields into the record, which keeps its dates where no range is in force.  An event id that is
/// blank becomes "-1".  False, and the record stays, where the event id is no 32-bit number.
bool StoreFieldsInRecord(FilterFields& fields, SuppressionFilter& record);

/// The filter that suppresses what is like this notification: its event id, source and type.
FilterFields ProposeFilter(const AlarmRecord& alarm);

}  // namespace tallyhorn
