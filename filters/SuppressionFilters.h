#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "filters/FilterFile.h"
#include "filters/FilterMatcher.h"
#include "filters/SuppressionFilter.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Owns the file of suppression filters, the filters that were loaded from it, and CurrentFilter, the record
/// through which the file is read and written.  A file that cannot be read contains no filters.
class SuppressionFilters {
public:
    /// The most records that are loaded or listed: far more than a user creates, yet loading any file takes
    /// less than a second and 50 MB.
    static constexpr std::int32_t MaxRecords = 100'000;

    explicit SuppressionFilters(std::filesystem::path filterFile);

    /// Opens the file, closing it first if it is open.  Does not change the loaded filters.
    void OpenFilterFile() { file_.Open(); }
    void CloseFilterFile() { file_.Close(); }
    /// Replaces the loaded filters by the records of the file that are not blank, and sets FilterCount to
    /// their number.  Leaves the last record that was read, blank or not, in CurrentFilter.
    void LoadSuppressionFilters();

    /// Returns whether at least one loaded filter matches.
    bool IsSuppressed(const AlarmRecord& alarm) const { return loaded_.Matches(alarm); }

    /// Returns the number of records in the file, including blank ones and those beyond MaxRecords.
    std::int32_t CountRecords() { return file_.CountRecords(); }
    /// Reads a record of the file, numbered from 1, into CurrentFilter.  Returns false and leaves
    /// CurrentFilter unchanged if there is no such record.
    bool ReadFilterRecord(std::int32_t recordNumber);
    /// Returns a record of the file without changing CurrentFilter, or nothing if there is no such record.
    std::optional<SuppressionFilter> PeekFilterRecord(std::int32_t recordNumber) {
        return file_.Read(recordNumber);
    }
    /// Writes CurrentFilter to the record with this number.  Returns whether the system accepted the bytes.
    /// The loaded filters change with the next LoadSuppressionFilters.
    bool WriteFilterRecord(std::int32_t recordNumber);
    /// Makes CurrentFilter a blank record, which marks a deleted filter in the file.  compatibility: keeps
    /// its dates, because the deleted records in existing files have dates.
    void ClearFilterRecord();

    SuppressionFilter CurrentFilter;
    /// After LoadSuppressionFilters, the number of loaded filters.  While DropFilterEditor is in use, the
    /// number of records in the file, including blank ones; the editor adds each filter after them.
    std::int32_t FilterCount = 0;

private:
    FilterFile file_;
    FilterMatcher loaded_;
};

}  // namespace tallyhorn
