#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>

#include "filters/SuppressionFilter.h"

namespace tallyhorn {

/// Owns the open file of suppression filters, slots of one size at random access by record number from 1.
/// The user-interface thread alone may call it.  No failure throws or tells more than that nothing was read
/// or written: what stands in the file's place may be anything.
class FilterFile {
public:
    explicit FilterFile(std::filesystem::path path) : path_(std::move(path)) {}

    /// Closes the file if it is open and opens it anew, creating it where nothing stands.  A file without the
    /// right to write is opened for reading alone; only a regular file is opened at all, since reading a pipe
    /// in its place could wait for ever.
    void Open();
    void Close();

    /// How many records the file holds now, told by its size alone.
    std::int32_t CountRecords();
    /// Nothing where the record's data are not all there; the slot's unused rest may be missing.
    std::optional<SuppressionFilter> Read(std::int32_t recordNumber);
    /// Writes the whole slot in place, or past the end; the file has it when this returns true.
    bool Write(std::int32_t recordNumber, const SuppressionFilter& filter);

private:
    bool TryOpen(std::ios::openmode mode);

    std::filesystem::path path_;
    std::fstream file_;
};

}  // namespace tallyhorn
