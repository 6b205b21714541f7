#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "filters/FilterFile.h"
#include "filters/FilterMatcher.h"
#include "filters/SuppressionFilter.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Owns the file of suppression filters, the table read from it, and the one record through which the file is
/// read and written.  The user-interface thread alone may call it.  A file that cannot be read, written or
/// created gives an empty table and is never reported.
class SuppressionFilters {
public:
    /// So many record slots of a file are loaded at most: far more than anyone types in a dialog, and a
    /// foreign file of any size still costs less than a second and 50 MB.
    static constexpr std::int32_t MaxRecords = 100'000;

    explicit SuppressionFilters(std::filesystem::path filterFile);

    /// Opens the file, anew if it is open.  The table stays as it is.
    void OpenFilterFile() { file_.Open(); }
    void CloseFilterFile() { file_.Close(); }
    /// Replaces the table by the file's non-blank records; FilterCount becomes their number, and
    /// CurrentFilter holds the last record read, blank ones included.
    void LoadSuppressionFilters();

    /// Whether at least one filter of the table matches.  There is no argument for the notification's text,
    /// since matching reads parsed fields alone.
    bool IsSuppressed(const AlarmRecord& alarm) const { return matcher_.Matches(alarm); }

    /// How many record slots the file holds, blank ones included and however many they are.
    std::int32_t CountRecords() { return file_.CountRecords(); }
    /// Reads a record of the file, numbered from 1, into CurrentFilter.  False where there is none, and
    /// CurrentFilter stays.
    bool ReadFilterRecord(std::int32_t recordNumber);
    /// Writes CurrentFilter as that record.  The table follows with the next load.
    bool WriteFilterRecord(std::int32_t recordNumber);
    /// Makes CurrentFilter the record that frees a slot; its dates stay.
    void ClearFilterRecord();

    /// The empty record, then the filters in the file's order.  Matching reads a form of its own; this one is
    /// for those who look at the filters that are in force, one by one.
    const std::vector<SuppressionFilter>& Table() const { return table_; }

    SuppressionFilter CurrentFilter;
    /// After a load the number of filters in the table.  Whoever lists the file counts its slots with it,
    /// blank ones included, and writes a new record at FilterCount + 1; matching does not depend on it.
    std::int32_t FilterCount = 0;

private:
    FilterFile file_;
    std::vector<SuppressionFilter> table_;
    FilterMatcher matcher_;
};

}  // namespace tallyhorn
