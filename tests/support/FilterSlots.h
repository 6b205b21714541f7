#pragma once

#include <string>
#include <string_view>

#include "filters/SuppressionFilter.h"

namespace tallyhorn {

// Filters, and the bytes that a filter file holds of them.

inline SuppressionFilter FilterOn(std::string_view name, std::string_view source) {
    SuppressionFilter filter;
    filter.FilterName = name;
    filter.Source = source;
    filter.EventID = AnyEventID;
    return filter;
}

inline std::string SlotOf(const SuppressionFilter& filter) {
    const FilterSlot slot = EncodeFilter(filter);
    return {slot.data(), slot.size()};
}

}  // namespace tallyhorn
