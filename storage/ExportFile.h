#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/BufferedWriter.h"
#include "platform/OutputFile.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Owns the text file that an export writes: a header, then one line per alarm, each ended by CR LF.
///
/// A line consists of the record's ten fields, separated by commas, with a blank in place of each line end
/// (CR LF, CR or LF).  The description is in double quotes.  compatibility: nothing is escaped, as the
/// programs that read these files expect.
class ExportFile {
public:
    /// Creates the file that Finish puts at `path`.  If it cannot be created, Write returns false and Finish
    /// returns the error.
    ExportFile(const std::filesystem::path& path, bool dayFirst);

    /// Writes one line.  Returns false if this or an earlier write failed.
    bool Write(const AlarmRecord& alarm);
    /// Replaces the file at `path` by the new file.  After a failure, leaves the file at `path` unchanged and
    /// returns the first error.
    std::optional<SystemError> Finish();

private:
    SystemError openError_;
    std::unique_ptr<OutputFile> file_;
    std::optional<BufferedWriter> writer_;  ///< empty if the file could not be created
    const std::string datePattern_;
    std::string line_;
    std::string buffer_;
};

}  // namespace tallyhorn
