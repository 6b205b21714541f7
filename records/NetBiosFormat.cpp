#include "records/NetBiosFormat.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t DateStart = 6;
constexpr std::size_t DateLength = 20;

/// Cuts a text into its lines from the front.
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    /// The next line without its end; nothing after the last.
    std::optional<std::string_view> Next() {
        if (ended_)
            return std::nullopt;
        const std::size_t end = rest_.find(LineEnd);
        const std::string_view line = rest_.substr(0, end);
        ended_ = end == std::string_view::npos;
        rest_.remove_prefix(ended_ ? rest_.size() : end + LineEnd.size());
        return line;
    }

    void Skip(int lines) {
        while (lines-- > 0)
            Next();
    }

    std::optional<std::string_view> Rest() const {
        return ended_ ? std::nullopt : std::optional<std::string_view>(rest_);
    }

private:
    std::string_view rest_;
    bool ended_ = false;
};

/// What follows the first ":" and one character more.
std::optional<std::string_view> Value(std::optional<std::string_view> line) {
    const std::size_t colon = line ? line->find(':') : std::string_view::npos;
    if (colon == std::string_view::npos)
        return std::nullopt;
    return line->substr(std::min(colon + 2, line->size()));
}

void TakeText(std::optional<std::string_view> value, std::string& field) {
    if (value)
        field.assign(*value);
}

void TakeUpperCase(std::optional<std::string_view> value, std::string& field) {
    if (value)
        AssignUpperCase(field, *value);
}

void TakeAlarmName(std::optional<std::string_view> line, std::string& field) {
    if (!line)
        return;
    const std::size_t open = line->find('(');
    const std::size_t close = line->rfind(')');
    if (open != std::string_view::npos && close != std::string_view::npos && open < close)
        field.assign(line->substr(open + 1, close - open - 1));
}

}  // namespace

void ParseCurrentAlarm(std::string_view text, AlarmRecord& alarm) {
    if (text.size() > DateStart)
        alarm.DateTime = ParseAlarmDate(text.substr(DateStart, DateLength)).value_or(alarm.DateTime);
    Lines lines(text);
    lines.Skip(3);
    TakeAlarmName(lines.Next(), alarm.AlarmName);
    lines.Skip(2);
    TakeText(Value(lines.Next()), alarm.LogType);
    TakeText(Value(lines.Next()), alarm.Source);
    TakeText(Value(lines.Next()), alarm.TypeOfEvent);
    TakeText(Value(lines.Next()), alarm.Category);
    if (const auto eventId = Value(lines.Next()))
        alarm.EventID = ToInt32(*eventId).value_or(alarm.EventID);
    TakeUpperCase(Value(lines.Next()), alarm.AccountName);
    TakeUpperCase(Value(lines.Next()), alarm.Computer);
    TakeText(Value(lines.Rest()), alarm.Description);
}

}  // namespace tallyhorn
