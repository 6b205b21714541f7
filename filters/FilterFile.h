#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>

#include "filters/SuppressionFilter.h"

namespace tallyhorn {

/// Owns the open file of suppression filters: records of one size, numbered from 1.  No function throws; a
/// failure means only that nothing is read or written.
class FilterFile {
public:
    explicit FilterFile(std::filesystem::path path) : path_(std::move(path)) {}

    /// Opens the file, closing it first if it is open; creates it if nothing has its name.  A file that may
    /// not be written is opened for reading only.  Anything but a regular file stays closed, because reading
    /// a pipe could block for ever.
    void Open();
    void Close();

    /// Returns the number of records that the file has at its current size, including blank ones.
    std::int32_t CountRecords();
    /// Returns nothing if any of the record's 236 data bytes is missing; the unused bytes after them may be
    /// missing.
    std::optional<SuppressionFilter> Read(std::int32_t recordNumber);
    /// Replaces the record, or extends the file if it does not have this record yet.  Returns whether the
    /// system accepted the bytes.
    bool Write(std::int32_t recordNumber, const SuppressionFilter& filter);

private:
    bool TryOpen(std::ios::openmode mode);

    std::filesystem::path path_;
    std::fstream file_;
};

}  // namespace tallyhorn
