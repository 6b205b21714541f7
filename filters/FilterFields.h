#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "filters/SuppressionFilter.h"
#include "records/AlarmDate.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// A suppression filter as the user types it: texts of any length, the event id as text, dates in whole
/// seconds.
struct FilterFields {
    std::string FilterName;
    std::string Source;
    std::string Category;
    std::string AccountName;
    std::string Computer;
    std::string EventID;          ///< empty to accept every event id
    std::int32_t EventTypes = 0;  ///< bits of FilterEventTypes
    bool UseDateRange = false;
    AlarmDate BeginDate;  ///< ignored without UseDateRange, like EndDate
    AlarmDate EndDate;

    bool operator==(const FilterFields&) const = default;
};

/// The range of dates that the dialog's date boxes accept: years 100 to 9999.
inline constexpr AlarmDate FirstTypedDate{-59'011'459'200};
inline constexpr AlarmDate LastTypedDate{253'402'300'799};

/// Returns the fields to edit: texts without NULs and surrounding blanks, as they are compared with alarms,
/// and dates limited to those that can be typed.
FilterFields ShowRecord(const SuppressionFilter& record);

/// Copies the fields into the record, whose dates change only if the fields have a date range.  A date that
/// ShowRecord returns for the record keeps its exact value, which may have a fraction of a second or be
/// outside the range of dates that can be typed.  Sets a blank `fields.EventID` to "-1".  Returns false and
/// leaves the record unchanged if EventID is not a 32-bit number.
bool StoreFieldsInRecord(FilterFields& fields, SuppressionFilter& record);

/// The most characters that the dialog accepts in a filter's name.
inline constexpr std::size_t LongestFilterName = 30;

/// Returns a filter for notifications like this one: with its event id, source and type.  The proposed name
/// has at most LongestFilterName characters.
FilterFields ProposeFilter(const AlarmRecord& alarm);

}  // namespace tallyhorn
