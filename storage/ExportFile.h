#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/BufferedWriter.h"
#include "platform/OutputFile.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Owns the text file that an export writes: a header, then a line for each alarm, ended by CR LF.  Called
/// from one thread at a time.
///
/// A line holds the ten fields of the record between commas, the description in double quotes with a blank
/// for each line end.  Nothing is escaped: what reads these files has always had it so.
class ExportFile {
public:
    /// What stands at `path` is replaced once Finish is done; a failure here is one that Write and Finish
    /// tell.
    ExportFile(const std::filesystem::path& path, bool dayFirst);

    /// False from the first failure on.
    bool Write(const AlarmRecord& alarm);
    /// Puts the file in its place, or leaves all as it was and tells the first failure.
    std::optional<SystemError> Finish();

private:
    SystemError openError_;
    std::unique_ptr<OutputFile> file_;
    std::optional<BufferedWriter> writer_;  ///< none where the file could not be made
    const std::string datePattern_;
    std::string line_;
    std::string description_;
};

}  // namespace tallyhorn
