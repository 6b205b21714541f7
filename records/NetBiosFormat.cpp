#include "records/NetBiosFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::size_t DateStart = 6;
constexpr std::size_t DateLength = 20;

/// Splits a text into lines, from front to back.  Results are returned through references because returning
/// them as optional values made parsing measurably slower.
class Lines {
public:
    explicit Lines(std::string_view text) : text_(text) {}

    /// Takes the next line without its line end.  Returns false after the last line.
    bool Next(std::string_view& line) {
        if (next_ > text_.size())
            return false;
        const std::size_t end = LineEnd();
        line = {text_.data() + next_, end - next_};
        next_ = end + 2;
        return true;
    }

    void Skip(int lines) {
        std::string_view skipped;
        while (lines-- > 0)
            Next(skipped);
    }

    /// Takes the next line and sets `value` to what follows its first ":" and one more character.  Returns
    /// false if the line is missing or has no ":".
    bool NextValue(std::string_view& value) {
        std::string_view line;
        return Next(line) && Value(line, value);
    }
    /// Sets `value` as NextValue does, but treats all remaining lines as one line.
    bool RemainingValue(std::string_view& value) const {
        return next_ <= text_.size() && Value(text_.substr(next_), value);
    }

private:
    /// Returns the position of the next CR LF, or the end of the text.
    std::size_t LineEnd() const {
        std::size_t from = next_;
        while (const void* const found = std::memchr(text_.data() + from, '\r', text_.size() - from)) {
            from = static_cast<std::size_t>(static_cast<const char*>(found) - text_.data()) + 1;
            if (from < text_.size() && text_[from] == '\n')
                return from - 1;
        }
        return text_.size();
    }

    static bool Value(std::string_view line, std::string_view& value) {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos)
            return false;
        value = line.substr(std::min(colon + 2, line.size()));
        return true;
    }

    const std::string_view text_;
    std::size_t next_ = 0;  ///< after the last line, larger than the text's size
};

/// Returns the first 20 characters, which usually contain the whole date.  Also includes the rest of the line
/// if that consists only of blanks and letters of "AM" and "PM", because a date such as "12/21/2008 10:05:09
/// PM" has 21 or 22 characters.
std::string_view DateText(std::string_view text) {
    constexpr std::string_view MarkLetters = " AaMmPp";
    std::size_t end = DateLength;
    while (end < text.size() && MarkLetters.find(text[end]) != std::string_view::npos)
        ++end;
    const bool endsLine = end >= text.size() || text[end] == '\r' || text[end] == '\n';
    return text.substr(0, endsLine ? end : DateLength);
}

void SetDate(std::string_view text, AlarmDate& date) {
    if (!ReadAlarmDate(DateText(text), date))
        ReadAlarmDate(text.substr(0, DateLength), date);
}

void SetAlarmName(std::string_view line, std::string& field) {
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(')');
    if (open != std::string_view::npos && close != std::string_view::npos && open < close)
        field.assign(line.substr(open + 1, close - open - 1));
}

}  // namespace

void ParseCurrentAlarm(std::string_view text, AlarmRecord& alarm) {
    if (text.size() > DateStart)
        SetDate(text.substr(DateStart), alarm.DateTime);
    Lines lines(text);
    std::string_view value;
    lines.Skip(3);
    if (lines.Next(value))
        SetAlarmName(value, alarm.AlarmName);
    lines.Skip(2);
    for (std::string* const field : {&alarm.LogType, &alarm.Source, &alarm.TypeOfEvent, &alarm.Category}) {
        if (lines.NextValue(value))
            field->assign(value);
    }
    if (lines.NextValue(value))
        ReadInt32(value, alarm.EventID);
    for (std::string* const field : {&alarm.AccountName, &alarm.Computer}) {
        if (lines.NextValue(value))
            AssignUpperCase(*field, value);
    }
    if (lines.RemainingValue(value))
        alarm.Description.assign(value);
}

}  // namespace tallyhorn
