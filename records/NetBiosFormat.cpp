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

/// Cuts a text into its lines from the front.  Views come back through references: a view in an optional,
/// handed from function to function, doubles the time of the whole parse.
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    /// The next line without its end; false after the last.
    bool Next(std::string_view& line) {
        if (ended_)
            return false;
        const std::size_t end = LineLength();
        line = {rest_.data(), end};
        ended_ = end == rest_.size();
        if (!ended_)
            rest_.remove_prefix(end + 2);
        return true;
    }

    void Skip(int lines) {
        std::string_view skipped;
        while (lines-- > 0)
            Next(skipped);
    }

    /// Of the next line, what follows the first ":" and one character more; false where there is none.
    bool NextValue(std::string_view& value) {
        std::string_view line;
        return Next(line) && Value(line, value);
    }
    /// The same of all that is left, as if it were one line.
    bool RestValue(std::string_view& value) const { return !ended_ && Value(rest_, value); }

private:
    /// Up to the next CR LF, or to the end of the text.
    std::size_t LineLength() const {
        std::size_t from = 0;
        while (const void* const found = std::memchr(rest_.data() + from, '\r', rest_.size() - from)) {
            const auto end = static_cast<std::size_t>(static_cast<const char*>(found) - rest_.data());
            if (end + 1 < rest_.size() && rest_[end + 1] == '\n')
                return end;
            from = end + 1;
        }
        return rest_.size();
    }

    static bool Value(std::string_view line, std::string_view& value) {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos)
            return false;
        value = line.substr(std::min(colon + 2, line.size()));
        return true;
    }

    std::string_view rest_;
    bool ended_ = false;
};

void TakeText(Lines& lines, std::string& field) {
    std::string_view value;
    if (lines.NextValue(value))
        field.assign(value);
}

void TakeUpperCase(Lines& lines, std::string& field) {
    std::string_view value;
    if (lines.NextValue(value))
        AssignUpperCase(field, value);
}

void TakeNumber(Lines& lines, std::int32_t& field) {
    std::string_view value;
    if (lines.NextValue(value))
        field = ToInt32(value).value_or(field);
}

void TakeAlarmName(Lines& lines, std::string& field) {
    std::string_view line;
    if (!lines.Next(line))
        return;
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(')');
    if (open != std::string_view::npos && close != std::string_view::npos && open < close)
        field.assign(line.substr(open + 1, close - open - 1));
}

}  // namespace

void ParseCurrentAlarm(std::string_view text, AlarmRecord& alarm) {
    if (text.size() > DateStart)
        alarm.DateTime = ParseAlarmDate(text.substr(DateStart, DateLength)).value_or(alarm.DateTime);
    Lines lines(text);
    lines.Skip(3);
    TakeAlarmName(lines, alarm.AlarmName);
    lines.Skip(2);
    TakeText(lines, alarm.LogType);
    TakeText(lines, alarm.Source);
    TakeText(lines, alarm.TypeOfEvent);
    TakeText(lines, alarm.Category);
    TakeNumber(lines, alarm.EventID);
    TakeUpperCase(lines, alarm.AccountName);
    TakeUpperCase(lines, alarm.Computer);
    std::string_view description;
    if (lines.RestValue(description))
        alarm.Description.assign(description);
}

}  // namespace tallyhorn
