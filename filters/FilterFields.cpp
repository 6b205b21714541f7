#include "filters/FilterFields.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "filters/FilterDates.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// Leaves room for "_" and an event id of up to seven digits in a name of LongestFilterName.
constexpr std::size_t LongestSourceInName = 22;

AlarmDate TypedDate(std::int64_t seconds) {
    return {std::clamp(seconds, FirstTypedDate.Seconds, LastTypedDate.Seconds)};
}

std::int32_t EventTypeOf(std::string_view type) {
    constexpr std::array<std::string_view, 5> Codes = {"INF", "WAR", "ERR", "FAI", "SUC"};
    const std::string code = UpperCase(type.substr(0, 3));
    const auto* const found = std::find(Codes.begin(), Codes.end(), code);
    return found == Codes.end() ? 0 : 1 << (found - Codes.begin());
}

}  // namespace

FilterFields ShowRecord(const SuppressionFilter& record) {
    FilterFields fields;
    fields.FilterName = StripNulls(record.FilterName.View());
    fields.Source = StripNulls(record.Source.View());
    fields.Category = StripNulls(record.Category.View());
    fields.AccountName = StripNulls(record.AccountName.View());
    fields.Computer = StripNulls(record.Computer.View());
    if (record.EventID != AnyEventID)
        fields.EventID = std::to_string(record.EventID);
    fields.EventTypes = record.EventTypes;
    fields.UseDateRange = record.UseDateRange != FilterFalse;
    fields.BeginDate = TypedDate(FirstSecond(record));
    fields.EndDate = TypedDate(LastSecond(record));
    return fields;
}

bool StoreFieldsInRecord(FilterFields& fields, SuppressionFilter& record) {
    if (Trim(fields.EventID).empty())
        fields.EventID = std::to_string(AnyEventID);
    if (!ReadInt32(fields.EventID, record.EventID))
        return false;
    const FilterFields before = ShowRecord(record);
    record.FilterName = fields.FilterName;
    record.AccountName = fields.AccountName;
    record.Source = fields.Source;
    record.Category = fields.Category;
    record.Computer = fields.Computer;
    record.EventTypes = fields.EventTypes;
    record.UseDateRange = fields.UseDateRange ? FilterTrue : FilterFalse;
    if (fields.UseDateRange) {
        if (!before.UseDateRange || fields.EndDate != before.EndDate)
            record.EndDate = DaysFromAlarmDate(fields.EndDate);
        if (!before.UseDateRange || fields.BeginDate != before.BeginDate)
            record.BeginDate = DaysFromAlarmDate(fields.BeginDate);
    }
    return true;
}

FilterFields ProposeFilter(const AlarmRecord& alarm) {
    FilterFields fields;
    fields.EventID = std::to_string(alarm.EventID);
    fields.Source = alarm.Source;
    fields.FilterName = fields.EventID + "_" + alarm.Source.substr(0, LongestSourceInName);
    fields.FilterName.resize(std::min(fields.FilterName.size(), LongestFilterName));
    fields.EventTypes = EventTypeOf(alarm.TypeOfEvent);
    return fields;
}

}  // namespace tallyhorn
