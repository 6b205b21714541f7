#include "storage/ExportFile.h"

#include "records/AnsiText.h"
#include "records/DateDisplay.h"

namespace tallyhorn {
namespace {

constexpr std::string_view Header =
    "DateTime,AlarmName,LogType,Source,TypeOfEvent,Category,EventID,AccountName,Computer,Description\r\n";
constexpr std::string_view LineEnd = "\r\n";
/// compatibility: always "/", whatever separator the lists use.
constexpr std::string_view Separator = "/";

/// Returns the text with each line end replaced by a blank; uses `buffer` only if there is one to replace.
std::string_view OnOneLine(std::string_view text, std::string& buffer) {
    std::size_t end = text.find(LineEnd);
    if (end == std::string_view::npos)
        return text;
    buffer.clear();
    for (; end != std::string_view::npos; end = text.find(LineEnd)) {
        buffer.append(text.substr(0, end)) += ' ';
        text.remove_prefix(end + LineEnd.size());
    }
    return buffer.append(text);
}

}  // namespace

ExportFile::ExportFile(const std::filesystem::path& path, bool dayFirst)
    : file_(CreateReplacementFile(path, openError_)),
      datePattern_(DateStyle{dayFirst, std::string(Separator)}.Pattern()) {
    if (file_)
        writer_.emplace(*file_).Write(Header);
}

bool ExportFile::Write(const AlarmRecord& alarm) {
    line_ = FormatAlarmDate(alarm.DateTime, datePattern_, Separator);
    for (const std::string* const field :
         {&alarm.AlarmName, &alarm.LogType, &alarm.Source, &alarm.TypeOfEvent, &alarm.Category})
        (line_ += ',') += *field;
    (line_ += ',') += std::to_string(alarm.EventID);
    (line_ += ',') += alarm.AccountName;
    (line_ += ',') += alarm.Computer;
    (line_ += ",\"") += Trim(OnOneLine(alarm.Description, description_));
    (line_ += '"') += LineEnd;
    return writer_ && writer_->Write(line_);
}

std::optional<SystemError> ExportFile::Finish() {
    return writer_ ? writer_->Finish() : openError_;
}

}  // namespace tallyhorn
