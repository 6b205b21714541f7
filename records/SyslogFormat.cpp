#include "records/SyslogFormat.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "records/AnsiText.h"
#include "records/CanonicalText.h"
#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

constexpr std::string_view Unknown = "???";

bool IsDateSeparator(char character, char own) {
    return character == '/' || character == ' ' || character == ':' || character == own;
}

/// Reads the numbers of a date one after another from the front of its text.  `own` is the separator that
/// this date uses beside the usual ones.
class DateNumbers {
public:
    DateNumbers(std::string_view text, char own)
        : next_(text.data()), end_(text.data() + text.size()), own_(own) {}

    /// Takes a number of at most nine digits, which cannot overflow.  Returns the count of its digits, or 0
    /// if it is missing or longer.
    std::size_t TakeNumber(int& number) {
        constexpr std::size_t MostDigits = 9;
        const char* const first = next_;
        unsigned value = 0;
        for (; next_ != end_ && IsDigit(*next_); ++next_)
            value = value * 10 + static_cast<unsigned>(*next_ - '0');
        number = static_cast<int>(value);
        const auto digits = static_cast<std::size_t>(next_ - first);
        return digits <= MostDigits ? digits : 0;
    }

    bool TakeSeparator() {
        if (next_ == end_ || !IsDateSeparator(*next_, own_))
            return false;
        ++next_;
        return true;
    }
    /// Takes a number and the separator after it.
    bool TakePart(int& number) { return TakeNumber(number) > 0 && TakeSeparator(); }

    /// Returns whether the remaining text contains no separator.
    bool IsPart() const {
        return std::none_of(next_, end_, [this](char c) { return IsDateSeparator(c, own_); });
    }
    bool AtEnd() const { return next_ == end_; }
    std::string_view Remaining() const { return {next_, static_cast<std::size_t>(end_ - next_)}; }

private:
    const char* next_;
    const char* const end_;
    const char own_;  ///< never a digit
};

/// Returns the hour of the day for the `hour` of a date that ends with `mark`: "PM" adds twelve hours, and
/// any other mark means the morning.
int HourOfDay(int hour, std::string_view mark) {
    const bool afternoon = mark.size() == 2 && ToUpper(mark[0]) == 'P' && ToUpper(mark[1]) == 'M';
    return (hour == 12 ? 0 : hour) + (afternoon ? 12 : 0);
}

bool CutDate(std::string_view text, char own, bool dayFirst, CivilDateTime& moment) {
    DateNumbers numbers(text, own);
    if (!numbers.TakePart(dayFirst ? moment.Day : moment.Month) ||
        !numbers.TakePart(dayFirst ? moment.Month : moment.Day))
        return false;
    const std::size_t yearDigits = numbers.TakeNumber(moment.Year);
    if (yearDigits == 0 || !numbers.TakeSeparator() || !numbers.TakePart(moment.Hour) ||
        !numbers.TakePart(moment.Minute) || numbers.TakeNumber(moment.Second) == 0)
        return false;
    if (yearDigits == 2)
        moment.Year = YearOfTwoDigits(moment.Year);
    if (numbers.AtEnd())
        return true;
    if (!numbers.TakeSeparator())
        return false;
    // A seventh part may be AM or PM; with an eighth part, the hour is one of 24.
    if (numbers.IsPart())
        moment.Hour = HourOfDay(moment.Hour, numbers.Remaining());
    return true;
}

/// The date's own separator is the character after the first number: its second character, or its third if
/// the second is a digit.  Leaves `date` unchanged if the text is not a date.
void ReadDatagramDate(std::string_view text, bool dayFirst, AlarmDate& date) {
    const std::size_t position = text.size() > 1 && IsDigit(text[1]) ? 2 : 1;
    if (position >= text.size())
        return;
    const char own = text[position];
    if (IsDigit(own)) {
        // Compatibility: a third digit is the separator, in the whole date.  "0192192008" is 01/21/2008.
        std::string other(text);
        std::replace(other.begin(), other.end(), own, '/');
        ReadDatagramDate(other, dayFirst, date);
        return;
    }
    CivilDateTime moment;
    if (!CutDate(text, own, dayFirst, moment))
        return;
    if (const std::optional<AlarmDate> read = MakeAlarmDate(moment))
        date = *read;
}

/// Splits a datagram into its fields, from front to back.  The object is small and results are returned
/// through references: passing either through memory costs more than the search.
class DatagramFields {
public:
    explicit DatagramFields(std::string_view text) : remaining_(text) {}

    /// Takes everything up to the first text in parentheses and returns that text.  Takes nothing and returns
    /// an empty text if there are no parentheses.
    std::string_view TakeName() {
        const std::size_t open = remaining_.find('(');
        if (open == std::string_view::npos)
            return {};
        const std::size_t close = remaining_.find(')', open + 1);
        if (close == std::string_view::npos)
            return {};
        const std::string_view name = remaining_.substr(open + 1, close - open - 1);
        remaining_.remove_prefix(close + 1);
        return name;
    }

    /// Takes the text before the next `delimiter`, and the delimiter.  Takes nothing and returns false if
    /// there is none.
    bool Take(char delimiter, std::string_view& field) {
        const std::size_t end = remaining_.find(delimiter);
        if (end == std::string_view::npos)
            return false;
        field = remaining_.substr(0, end);
        remaining_.remove_prefix(end + 1);
        return true;
    }
    bool TakeTrimmed(std::string_view& field) {
        if (!Take(',', field))
            return false;
        field = Trim(field);
        return true;
    }

    std::string_view Remaining() const { return remaining_; }

private:
    std::string_view remaining_;
};

/// Reads the fields that follow the name, up to the first one whose delimiter is missing.
void ReadFields(DatagramFields& fields, bool dayFirst, AlarmRecord& alarm) {
    constexpr std::size_t LogWord = 3;
    std::string_view field;
    if (!fields.Take(':', field) || !fields.Take(',', field))
        return;
    if (field.size() >= LogWord)
        alarm.LogType.assign(Trim(field.substr(0, field.size() - LogWord)));
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
    alarm.Description.assign(Trim(fields.Remaining()));
}

/// Sets the fields of a notification that contains neither the computer nor the date of its event.
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
