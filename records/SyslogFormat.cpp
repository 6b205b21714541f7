#include "records/SyslogFormat.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "records/AnsiText.h"
#include "records/CanonicalText.h"
#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

constexpr std::string_view Unknown = "???";

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsDateSeparator(char character, char own) {
    return character == own || character == '/' || character == ' ' || character == ':';
}

/// The first six parts of a date, each of which must be a number, and what stands behind them.
struct DateParts {
    std::array<int, 6> Numbers;
    std::ptrdiff_t YearDigits;
    bool More;  ///< a separator ended the last number, so that `Rest` is a part or several
    std::string_view Rest;
};
constexpr std::size_t YearPart = 2;

/// False where a part is missing or not a number of at most nine digits.  `own` is no digit.
bool CutDate(std::string_view text, char own, DateParts& parts) {
    constexpr std::ptrdiff_t MostDigits = 9;
    const char* next = text.data();
    const char* const end = next + text.size();
    for (std::size_t part = 0; part < parts.Numbers.size(); ++part) {
        const char* const first = next;
        unsigned number = 0;
        for (; next != end && IsDigit(*next); ++next)
            number = number * 10 + static_cast<unsigned>(*next - '0');
        const std::ptrdiff_t digits = next - first;
        parts.More = next != end;
        if (digits == 0 || digits > MostDigits || (parts.More && !IsDateSeparator(*next, own)))
            return false;
        next += parts.More ? 1 : 0;
        parts.Numbers[part] = static_cast<int>(number);
        if (part == YearPart)
            parts.YearDigits = digits;
    }
    parts.Rest = {next, static_cast<std::size_t>(end - next)};
    return true;
}

/// The hour of the day for an hour that stands before "PM" or anything else.
int HourOfTwelve(int hour, std::string_view mark) {
    const bool afternoon = mark.size() == 2 && ToUpper(mark[0]) == 'P' && ToUpper(mark[1]) == 'M';
    return (hour == 12 ? 0 : hour) + (afternoon ? 12 : 0);
}

void SetDate(const DateParts& parts, bool dayFirst, char own, AlarmDate& date) {
    const auto& numbers = parts.Numbers;
    CivilDateTime moment{
        numbers[YearPart], numbers[dayFirst ? 1 : 0], numbers[dayFirst ? 0 : 1], numbers[3], numbers[4],
        numbers[5]};
    if (parts.YearDigits == 2)
        moment.Year = YearOfTwoDigits(moment.Year);
    // Seven parts exactly, else the hour is one of 24.
    if (parts.More &&
        std::none_of(parts.Rest.begin(), parts.Rest.end(), [own](char c) { return IsDateSeparator(c, own); }))
        moment.Hour = HourOfTwelve(moment.Hour, parts.Rest);
    if (const std::optional<AlarmDate> read = MakeAlarmDate(moment))
        date = *read;
}

/// A date's own separator is its second character, or the third where the second is a digit.
void ReadDatagramDate(std::string_view text, bool dayFirst, AlarmDate& date) {
    const std::size_t position = text.size() > 1 && IsDigit(text[1]) ? 2 : 1;
    if (position >= text.size())
        return;
    const char own = text[position];
    if (IsDigit(own)) {
        std::string other(text);
        std::replace(other.begin(), other.end(), own, '/');
        ReadDatagramDate(other, dayFirst, date);
        return;
    }
    DateParts parts;
    if (CutDate(text, own, parts))
        SetDate(parts, dayFirst, own, date);
}

/// Cuts a datagram into its fields from the front.  Views come back through references, as in the other
/// format's reader, for speed.
class DatagramFields {
public:
    explicit DatagramFields(std::string_view text) : rest_(text) {}

    /// The text in parentheses; empty, and nothing is passed over, where there are none.
    std::string_view TakeName() {
        const std::size_t open = rest_.find('(');
        if (open == std::string_view::npos)
            return {};
        const std::size_t close = rest_.find(')', open + 1);
        if (close == std::string_view::npos)
            return {};
        const std::string_view name = rest_.substr(open + 1, close - open - 1);
        rest_.remove_prefix(close + 1);
        return name;
    }

    /// What ends before the next `delimiter`; false, and nothing is passed over, where there is none.
    bool Take(char delimiter, std::string_view& field) {
        const std::size_t end = rest_.find(delimiter);
        if (end == std::string_view::npos)
            return false;
        field = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        return true;
    }
    bool TakeTrimmed(std::string_view& field) {
        if (!Take(',', field))
            return false;
        field = Trim(field);
        return true;
    }

    std::string_view Rest() const { return rest_; }

private:
    std::string_view rest_;
};

/// All that follows the name, up to the first field that has no end.
void ReadFields(DatagramFields& fields, bool dayFirst, AlarmRecord& alarm) {
    constexpr std::size_t LogWord = 3;
    std::string_view field;
    if (!fields.Take(':', field) || !fields.Take(',', field))
        return;
    alarm.LogType.assign(Trim(field.substr(0, field.size() - std::min(LogWord, field.size()))));
    if (!fields.TakeTrimmed(field))
        return;
    ReadDatagramDate(field, dayFirst, alarm.DateTime);
    for (std::string* const text : {&alarm.Source, &alarm.TypeOfEvent, &alarm.Category}) {
        if (!fields.TakeTrimmed(field))
            return;
        text->assign(field);
    }
    if (!fields.TakeTrimmed(field))
        return;
    ReadInt32(field, alarm.EventID);
    for (std::string* const text : {&alarm.AccountName, &alarm.Computer}) {
        if (!fields.TakeTrimmed(field))
            return;
        AssignUpperCase(*text, field);
    }
    alarm.Description.assign(Trim(fields.Rest()));
}

/// What a notification gets that tells neither where nor when it happened.
void SetUnknown(AlarmRecord& alarm, std::string_view name, AlarmDate now) {
    alarm.DateTime = now;
    alarm.AlarmName = name;
    alarm.LogType = Unknown;
    alarm.Computer = Unknown;
    alarm.AccountName = Unknown;
    alarm.TypeOfEvent.clear();
}

}  // namespace

bool IsAlarmNotification(std::string_view text) {
    return text.find("Event ") != std::string_view::npos && text.find(':') != std::string_view::npos;
}

void ParseSyslogText(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm) {
    DatagramFields fields(text);
    const std::string_view name = fields.TakeName();
    alarm.AlarmName.assign(name);
    ReadFields(fields, dayFirst, alarm);
    if (text.find("Test Message") != std::string_view::npos)
        SetUnknown(alarm, "Test Notification", now);
    else if (Trim(name).empty())
        SetUnknown(alarm, Unknown, now);
    ShowEventType(alarm.TypeOfEvent);
}

void ReadStoredText(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm) {
    if (!ReadMessageText(text, alarm))
        ParseSyslogText(text, dayFirst, now, alarm);
}

}  // namespace tallyhorn
