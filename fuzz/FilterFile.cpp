// Loads arbitrary bytes as the filter file.  The filters must be those in the file, IsSuppressed must agree
// with a literal implementation of the rules, and encoding a decoded record must give the same bytes.

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "filters/SuppressionFilters.h"
#include "fuzz/Require.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

AlarmRecord FixedAlarm() {
    AlarmRecord alarm;
    alarm.DateTime = *MakeAlarmDate({2004, 6, 15, 10, 30, 15});
    alarm.Source = "Service Control Manager";
    alarm.TypeOfEvent = "Failure Audit";
    alarm.Category = "None";
    alarm.EventID = 7036;
    alarm.AccountName = "N/A";
    alarm.Computer = "SRV1";
    return alarm;
}

/// The reference implementation: returns whether the filter matches, one test after the other.
bool MatchesByTheRules(const SuppressionFilter& filter, const AlarmRecord& alarm) {
    bool verdict = false;
    const std::string_view texts[][2] = {{filter.Source.View(), alarm.Source},
                                         {filter.Category.View(), alarm.Category},
                                         {filter.AccountName.View(), alarm.AccountName},
                                         {filter.Computer.View(), alarm.Computer}};
    if (filter.UseDateRange != 0) {
        const std::int64_t date = alarm.DateTime.Seconds * 1000;
        if (date < MillisecondsFromDays(filter.BeginDate).value_or(date) ||
            date > MillisecondsFromDays(filter.EndDate).value_or(date))
            return false;
        verdict = true;
    }
    for (const auto& [wanted, held] : texts) {
        if (StripNulls(wanted).empty())
            continue;
        if (CompareNoCase(StripNulls(wanted), held) != 0)
            return false;
        verdict = true;
    }
    if (filter.EventID != AnyEventID) {
        if (filter.EventID != alarm.EventID)
            return false;
        verdict = true;
    }
    return filter.EventTypes == 0 ? verdict : (filter.EventTypes & FilterFailureAudit) != 0;
}

/// Returns whether one of the filters in the file's bytes suppresses FixedAlarm().  Adds the number of
/// filters with a name to `named`.
bool SuppressedByTheRules(const char* data, std::size_t size, std::int32_t& named) {
    bool suppressed = false;
    for (std::size_t start = 0; start + FilterDataSize <= size; start += FilterRecordSize) {
        const std::span<const char, FilterDataSize> record(data + start, FilterDataSize);
        const SuppressionFilter filter = DecodeFilter(record);
        Require(std::memcmp(EncodeFilter(filter).data(), record.data(), record.size()) == 0);
        if (StripNulls(filter.FilterName.View()).empty())
            continue;
        ++named;
        suppressed = suppressed || MatchesByTheRules(filter, FixedAlarm());
    }
    return suppressed;
}

const std::filesystem::path& ScratchPath() {
    static const std::filesystem::path Path =
        std::filesystem::temp_directory_path() / ("tallyhorn-fuzz-filters-" + std::to_string(getpid()));
    static const int Registered = std::atexit([] { std::filesystem::remove(Path); });
    Require(Registered == 0);
    return Path;
}

}  // namespace
}  // namespace tallyhorn

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tallyhorn;
    const char* const bytes = reinterpret_cast<const char*>(data);
    std::ofstream(ScratchPath(), std::ios::binary).write(bytes, static_cast<std::streamsize>(size));
    SuppressionFilters filters(ScratchPath());
    filters.OpenFilterFile();
    filters.LoadSuppressionFilters();

    std::int32_t named = 0;
    const bool suppressed = SuppressedByTheRules(bytes, size, named);
    Require(filters.FilterCount == named);
    Require(filters.IsSuppressed(FixedAlarm()) == suppressed);
    return 0;
}
