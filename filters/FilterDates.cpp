#include "filters/FilterDates.h"

#include <limits>
#include <optional>

#include "records/AlarmDate.h"

namespace tallyhorn {
namespace {

constexpr std::int64_t NoLowerEnd = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t NoUpperEnd = std::numeric_limits<std::int64_t>::max();

std::int64_t FloorSeconds(std::int64_t milliseconds) {
    return milliseconds / 1000 - (milliseconds % 1000 < 0 ? 1 : 0);
}

std::int64_t CeilSeconds(std::int64_t milliseconds) {
    return milliseconds / 1000 + (milliseconds % 1000 > 0 ? 1 : 0);
}

}  // namespace

std::int64_t FirstSecond(const SuppressionFilter& filter) {
    const std::optional<std::int64_t> begin = MillisecondsFromDays(filter.BeginDate);
    return filter.UseDateRange != FilterFalse && begin ? CeilSeconds(*begin) : NoLowerEnd;
}

std::int64_t LastSecond(const SuppressionFilter& filter) {
    const std::optional<std::int64_t> end = MillisecondsFromDays(filter.EndDate);
    return filter.UseDateRange != FilterFalse && end ? FloorSeconds(*end) : NoUpperEnd;
}

}  // namespace tallyhorn
