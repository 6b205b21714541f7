#include "filters/SuppressionFilters.h"

#include <utility>
#include <vector>

#include "records/AnsiText.h"

namespace tallyhorn {

SuppressionFilters::SuppressionFilters(std::filesystem::path filterFile) : file_(std::move(filterFile)) {}

void SuppressionFilters::LoadSuppressionFilters() {
    std::vector<SuppressionFilter> filters;
    for (std::int32_t record = 1; record <= MaxRecords && ReadFilterRecord(record); ++record) {
        if (!StripNulls(CurrentFilter.FilterName.View()).empty())
            filters.push_back(CurrentFilter);
    }
    FilterCount = static_cast<std::int32_t>(filters.size());
    loaded_ = FilterMatcher(filters);
}

bool SuppressionFilters::ReadFilterRecord(std::int32_t recordNumber) {
    const std::optional<SuppressionFilter> filter = file_.Read(recordNumber);
    if (filter)
        CurrentFilter = *filter;
    return filter.has_value();
}

bool SuppressionFilters::WriteFilterRecord(std::int32_t recordNumber) {
    return file_.Write(recordNumber, CurrentFilter);
}

void SuppressionFilters::ClearFilterRecord() {
    SuppressionFilter blank;
    blank.BeginDate = CurrentFilter.BeginDate;
    blank.EndDate = CurrentFilter.EndDate;
    CurrentFilter = blank;
}

}  // namespace tallyhorn
