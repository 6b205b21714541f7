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

/// Returns the text with each CR LF, CR or LF replaced by one blank; copies it to `buffer` only if there is
/// one to replace.
std::string_view OnOneLine(std::string_view text, std::string& buffer) {
    if (text.find('\r') == std::string_view::npos && text.find('\n') == std::string_view::npos)
        return text;
    buffer.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, LineEnd.size()) != LineEnd)
            buffer += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
    }
    return buffer;
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
        (line_ += ',') += OnOneLine(*field, buffer_);
    (line_ += ',') += std::to_string(alarm.EventID);
    (line_ += ',') += OnOneLine(alarm.AccountName, buffer_);
    (line_ += ',') += OnOneLine(alarm.Computer, buffer_);
    (line_ += ",\"") += Trim(OnOneLine(alarm.Description, buffer_));
    (line_ += '"') += LineEnd;
    return writer_ && writer_->Write(line_);
}

std::optional<SystemError> ExportFile::Finish() {
    return writer_ ? writer_->Finish() : openError_;
}

}  // namespace tallyhorn
