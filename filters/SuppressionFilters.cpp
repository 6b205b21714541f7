#include "filters/SuppressionFilters.h"

#include <utility>

#include "records/AnsiText.h"

namespace tallyhorn {

SuppressionFilters::SuppressionFilters(std::filesystem::path filterFile)
    : file_(std::move(filterFile)), table_(1) {}

void SuppressionFilters::LoadSuppressionFilters() {
    table_.assign(1, SuppressionFilter());
    FilterCount = 0;
    for (std::int32_t record = 1; record <= MaxRecords && ReadFilterRecord(record); ++record) {
        if (StripNulls(CurrentFilter.FilterName.View()).empty())
            continue;
        table_.push_back(CurrentFilter);
        ++FilterCount;
    }
    matcher_ = FilterMatcher(table_);
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
