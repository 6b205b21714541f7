#pragma once

#include <string>
#include <string_view>

#include "filters/SuppressionFilters.h"

namespace tallyhorn {

/// Returns a filter that compares only the source, or nothing at all if `source` is empty.
inline SuppressionFilter FilterOn(std::string_view name, std::string_view source) {
    SuppressionFilter filter;
    filter.FilterName = name;
    filter.Source = source;
    filter.EventID = AnyEventID;
    return filter;
}

/// Returns the bytes of the filter's record in the filter file.
inline std::string RecordBytes(const SuppressionFilter& filter) {
    const FilterRecord record = EncodeFilter(filter);
    return {record.data(), record.size()};
}

/// Returns those of the sources "a" to "d" whose alarms are suppressed.
inline std::string SuppressedSources(const SuppressionFilters& filters) {
    std::string sources;
    AlarmRecord alarm;
    for (const char* const source : {"a", "b", "c", "d"}) {
        alarm.Source = source;
        sources += filters.IsSuppressed(alarm) ? source : "";
    }
    return sources;
}

}  // namespace tallyhorn
