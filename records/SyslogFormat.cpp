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
constexpr std::size_t YearLength = 4;
/// Greater than every hour of a day.
constexpr int NoHour = 24;

bool IsDateSeparator(char character, char own) {
    return character == '/' || character == ' ' || character == ':' || character == own;
}

/// Splits a date into parts at its separators, from front to back.  `own` is the separator that this date
/// uses besides "/", ":" and the blank.
class DateParts {
public:
    DateParts(std::string_view text, char own)
        : next_(text.data()), end_(text.data() + text.size()), own_(own) {}

    /// Takes the next part.  Returns the count of its digits, or 0 and leaves `number` unchanged if the part
    /// is missing or is not a number of at most nine digits, which cannot overflow.
    std::size_t Take(int& number) {
        constexpr std::size_t MostDigits = 9;
        const char* const first = next_;
        unsigned value = 0;
        for (; next_ != end_ && IsDigit(*next_); ++next_)
            value = value * 10 + static_cast<unsigned>(*next_ - '0');
        const auto digits = static_cast<std::size_t>(next_ - first);
        const bool isNumber = digits > 0 && digits <= MostDigits && SkipSeparator();
        if (!isNumber)
            SkipPart();
        else
            number = static_cast<int>(value);
        return isNumber ? digits : 0;
    }
    /// Takes the next part, and stores it in `number` if it is a number below `bound`.
    void TakeBelow(int bound, int& number) {
        int value = bound;
        if (Take(value) > 0 && value < bound)
            number = value;
    }

    /// Sets `part` to the remaining text and returns true if that is exactly one part.
    bool IsLast(std::string_view& part) const {
        part = {next_, static_cast<std::size_t>(end_ - next_)};
        return separated_ && std::none_of(next_, end_, [this](char c) { return IsDateSeparator(c, own_); });
    }

private:
    /// Skips one separator, if there is one.  Returns whether the text was at a separator or at its end.
    bool SkipSeparator() {
        separated_ = next_ != end_ && IsDateSeparator(*next_, own_);
        next_ += separated_ ? 1 : 0;
        return separated_ || next_ == end_;
    }
    void SkipPart() {
        next_ = std::find_if(next_, end_, [this](char c) { return IsDateSeparator(c, own_); });
        SkipSeparator();
    }

    const char* next_;
    const char* const end_;
    const char own_;         ///< never a digit
    bool separated_ = true;  ///< whether another part follows; it may be empty
};

/// Reads hour, minute and second.  A missing hour becomes NoHour; a missing or invalid minute or second
/// becomes 0.
void ReadTime(DateParts& parts, CivilDateTime& moment) {
    moment.Hour = NoHour;
    parts.Take(moment.Hour);
    parts.TakeBelow(60, moment.Minute);
    parts.TakeBelow(60, moment.Second);
}

/// Converts the hour of a date that ends with `mark` to an hour of the day: "PM" adds twelve hours, and any
/// other mark means the morning.
void ApplyMark(std::string_view mark, int& hour) {
    const bool afternoon = mark.size() == 2 && ToUpper(mark[0]) == 'P' && ToUpper(mark[1]) == 'M';
    hour = (hour == 12 ? 0 : hour) + (afternoon ? 12 : 0);
}

/// Sets `date`, with hour 0 if the hour is out of range.  Returns false and leaves `date` unchanged if the
/// day does not exist.
bool SetDate(CivilDateTime moment, AlarmDate& date) {
    if (moment.Hour >= NoHour)
        moment.Hour = 0;
    const std::optional<AlarmDate> read = MakeAlarmDate(moment);
    date = read.value_or(date);
    return read.has_value();
}

/// Reads a date that begins with a year of four digits, then month and day.  The time follows after a blank
/// or "T".  A fraction of a second and a time zone are ignored.  Returns false and leaves `date` unchanged if
/// the text does not begin with a valid day in this form.
bool ReadYearFirst(std::string_view text, AlarmDate& date) {
    const std::size_t dayEnd = std::min(text.find_first_of("Tt "), text.size());
    DateParts day(text.substr(0, dayEnd), text[YearLength]);
    CivilDateTime moment;
    if (day.Take(moment.Year) != YearLength || day.Take(moment.Month) == 0 || day.Take(moment.Day) == 0)
        return false;
    const std::string_view rest = Trim(text.substr(std::min(dayEnd + 1, text.size())));
    const std::string_view digits = rest.substr(0, rest.find_first_not_of("0123456789:"));
    DateParts time(digits, ':');
    ReadTime(time, moment);
    const std::string_view mark = Trim(rest.substr(digits.size()));
    if (CompareNoCase(mark, "AM") == 0 || CompareNoCase(mark, "PM") == 0)
        ApplyMark(mark, moment.Hour);
    return SetDate(moment, date);
}

/// Reads a date that begins with month and day, or with day and month.  The date's own separator is the
/// character after its first one or two digits.  Leaves `date` unchanged if the text does not begin with a
/// valid day.
void ReadYearLast(std::string_view text, bool dayFirst, AlarmDate& date) {
    const std::size_t position = text.size() > 1 && IsDigit(text[1]) ? 2 : 1;
    if (position >= text.size())
        return;
    const char own = text[position];
    if (IsDigit(own)) {
        // compatibility: if the third character is also a digit, that digit is the separator in the whole
        // date: "0192192008" is 01/21/2008.
        std::string other(text);
        std::replace(other.begin(), other.end(), own, '/');
        ReadYearLast(other, dayFirst, date);
        return;
    }
    DateParts parts(text, own);
    CivilDateTime moment;
    if (parts.Take(dayFirst ? moment.Day : moment.Month) == 0 ||
        parts.Take(dayFirst ? moment.Month : moment.Day) == 0)
        return;
    const std::size_t yearDigits = parts.Take(moment.Year);
    if (yearDigits == 0)
        return;
    if (yearDigits == 2)
        moment.Year = YearOfTwoDigits(moment.Year);
    ReadTime(parts, moment);
    // After month, day, year, hour, minute and second, a seventh part may be AM or PM.  If even more parts
    // follow, the hour is read as an hour of the 24-hour clock.
    std::string_view mark;
    if (parts.IsLast(mark))
        ApplyMark(mark, moment.Hour);
    SetDate(moment, date);
}

void ReadDatagramDate(std::string_view text, bool dayFirst, AlarmDate& date) {
    const bool mayBeginWithYear =
        text.size() > YearLength && IsDigit(text[2]) && IsDigit(text[3]) && !IsDigit(text[YearLength]);
    if (!mayBeginWithYear || !ReadYearFirst(text, date))
        ReadYearLast(text, dayFirst, date);
}

/// Splits a datagram into its fields, from front to back.  The object is kept small, and results are returned
/// through references, because passing larger objects through memory costs more than the search.
class DatagramFields {
public:
    explicit DatagramFields(std::string_view text) : remaining_(text) {}

    /// Removes everything up to and including the first text in parentheses, and returns that text.  Without
    /// parentheses, removes nothing and returns an empty text.
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

    /// Removes the text before the next `delimiter` and the delimiter, and stores the text in `field`.
    /// Without a delimiter, removes nothing and returns false.
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
