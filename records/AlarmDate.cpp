#include "records/AlarmDate.h"

#include <array>
#include <chrono>
#include <cmath>
#include <limits>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::int64_t SecondsPerDay = 86400;
constexpr std::int64_t SecondsPerHour = 3600;
constexpr std::int64_t SecondsPerMinute = 60;
constexpr int FirstYear = 100;
constexpr int LastYear = 9999;

/// Reads the elements of a date one after another from the front of a text.  Each Take function returns false
/// if the next element is of another kind.
class DateReader {
public:
    explicit DateReader(std::string_view text) : next_(text.data()), end_(text.data() + text.size()) {}

    /// The text ends at its first CR or LF.
    bool AtEnd() const { return next_ == end_ || *next_ == '\r' || *next_ == '\n'; }

    bool SkipBlanks() {
        const char* const first = next_;
        while (next_ != end_ && *next_ == ' ')
            ++next_;
        return next_ != first;
    }

    bool Take(char wanted) {
        if (next_ == end_ || *next_ != wanted)
            return false;
        ++next_;
        return true;
    }

    /// Takes one to four digits and stores their count in `digits`.  Fails if a fifth digit follows.
    bool TakeNumber(int& value, std::size_t& digits) {
        const char* const first = next_;
        const char* const stop = end_ - first > 4 ? first + 4 : end_;
        int number = 0;
        for (; next_ != stop && IsDigit(*next_); ++next_)
            number = number * 10 + (*next_ - '0');
        if (next_ == stop && stop != end_ && IsDigit(*stop))
            return false;
        value = number;
        digits = static_cast<std::size_t>(next_ - first);
        return digits > 0;
    }

    bool TakeSeparator(char& separator) {
        if (next_ == end_ || (*next_ != '/' && *next_ != '-' && *next_ != '.'))
            return false;
        separator = *next_++;
        return true;
    }

    /// Takes "AM" or "PM", in upper or lower case; after a blank also takes "A" or "P".
    bool TakeHalfDay(bool afterBlank, bool& afternoon) {
        if (next_ == end_ || (ToUpper(*next_) != 'A' && ToUpper(*next_) != 'P'))
            return false;
        const bool whole = end_ - next_ > 1 && ToUpper(next_[1]) == 'M';
        if (!whole && !afterBlank)
            return false;
        afternoon = ToUpper(*next_) == 'P';
        next_ += whole ? 2 : 1;
        return true;
    }

private:
    const char* next_;
    const char* const end_;
};

struct Number {
    int Value = 0;
    std::size_t Digits = 0;
};

bool IsYear(Number number) {
    return number.Digits == 4 || number.Digits == 2;
}

int FullYear(Number year) {
    return year.Digits == 4 ? year.Value : YearOfTwoDigits(year.Value);
}

/// Accepts year/month/day if the first number has four digits, day/month/year if it is over 12, and otherwise
/// month/day/year.
bool ReadDay(DateReader& reader, CivilDateTime& parts) {
    std::array<Number, 3> numbers;
    char separator = 0;
    if (!reader.TakeNumber(numbers[0].Value, numbers[0].Digits) || !reader.TakeSeparator(separator) ||
        !reader.TakeNumber(numbers[1].Value, numbers[1].Digits) || !reader.Take(separator) ||
        !reader.TakeNumber(numbers[2].Value, numbers[2].Digits))
        return false;
    if (numbers[1].Digits > 2)
        return false;
    if (numbers[0].Digits == 4) {
        parts.Year = numbers[0].Value;
        parts.Month = numbers[1].Value;
        parts.Day = numbers[2].Value;
        return numbers[2].Digits <= 2;
    }
    if (numbers[0].Digits > 2 || !IsYear(numbers[2]))
        return false;
    const bool dayFirst = numbers[0].Value > 12;
    parts.Year = FullYear(numbers[2]);
    parts.Month = numbers[dayFirst ? 1 : 0].Value;
    parts.Day = numbers[dayFirst ? 0 : 1].Value;
    return true;
}

bool ReadTime(DateReader& reader, CivilDateTime& parts) {
    std::size_t digits = 0;
    if (!reader.TakeNumber(parts.Hour, digits) || digits > 2)
        return false;
    if (!reader.Take(':') || !reader.TakeNumber(parts.Minute, digits) || digits != 2)
        return false;
    if (reader.Take(':') && (!reader.TakeNumber(parts.Second, digits) || digits != 2))
        return false;
    const bool afterBlank = reader.SkipBlanks();
    bool afternoon = false;
    if (!reader.TakeHalfDay(afterBlank, afternoon))
        return true;
    if (parts.Hour < 1 || parts.Hour > 12)
        return false;
    parts.Hour = parts.Hour % 12 + (afternoon ? 12 : 0);
    return true;
}

/// Collects the characters of a date in a fixed buffer.  With snprintf instead, formatting the date took
/// longer than all other work on a message text.
class GeneralDateText {
public:
    void Add(char character) { characters_[length_++] = character; }
    void AddTwoDigits(int number) {
        Add(static_cast<char>('0' + number / 10 % 10));
        Add(static_cast<char>('0' + number % 10));
    }
    /// Adds a number from 0 to 99 without a leading zero.
    void Add(int number) {
        if (number >= 10)
            Add(static_cast<char>('0' + number / 10));
        Add(static_cast<char>('0' + number % 10));
    }
    std::string_view View() const { return {characters_.data(), length_}; }

private:
    std::array<char, sizeof("12/31/9999 12:59:59 PM")> characters_{};
    std::size_t length_ = 0;
};

}  // namespace

std::optional<AlarmDate> MakeAlarmDate(const CivilDateTime& parts) {
    using namespace std::chrono;
    if (parts.Year < FirstYear || parts.Year > LastYear || parts.Month < 1 || parts.Day < 1)
        return std::nullopt;
    const year_month_day day{year(parts.Year), month(static_cast<unsigned>(parts.Month)),
                             std::chrono::day(static_cast<unsigned>(parts.Day))};
    const bool timeFits = parts.Hour >= 0 && parts.Hour < 24 && parts.Minute >= 0 && parts.Minute < 60 &&
                          parts.Second >= 0 && parts.Second < 60;
    if (!day.ok() || !timeFits)
        return std::nullopt;
    const std::int64_t days = sys_days(day).time_since_epoch().count();
    return AlarmDate{days * SecondsPerDay + parts.Hour * SecondsPerHour + parts.Minute * SecondsPerMinute +
                     parts.Second};
}

CivilDateTime SplitAlarmDate(AlarmDate date) {
    using namespace std::chrono;
    std::int64_t days = date.Seconds / SecondsPerDay;
    std::int64_t rest = date.Seconds % SecondsPerDay;
    if (rest < 0) {
        rest += SecondsPerDay;
        --days;
    }
    const year_month_day day{sys_days(std::chrono::days(days))};
    const auto time = static_cast<int>(rest);
    return {int(day.year()),
            static_cast<int>(unsigned(day.month())),
            static_cast<int>(unsigned(day.day())),
            time / 3600,
            time / 60 % 60,
            time % 60};
}

bool ReadAlarmDate(std::string_view text, AlarmDate& date) {
    DateReader reader(text);
    CivilDateTime parts;
    reader.SkipBlanks();
    if (!ReadDay(reader, parts))
        return false;
    if (reader.SkipBlanks() && !reader.AtEnd() && !ReadTime(reader, parts))
        return false;
    reader.SkipBlanks();
    const std::optional<AlarmDate> read = reader.AtEnd() ? MakeAlarmDate(parts) : std::nullopt;
    date = read.value_or(date);
    return read.has_value();
}

void AppendGeneralDate(std::string& text, AlarmDate date) {
    const CivilDateTime parts = SplitAlarmDate(date);
    GeneralDateText written;
    written.Add(parts.Month);
    written.Add('/');
    written.Add(parts.Day);
    written.Add('/');
    written.AddTwoDigits(parts.Year / 100);
    written.AddTwoDigits(parts.Year % 100);
    if (parts.Hour != 0 || parts.Minute != 0 || parts.Second != 0) {
        written.Add(' ');
        written.Add(HourOfTwelve(parts.Hour));
        written.Add(':');
        written.AddTwoDigits(parts.Minute);
        written.Add(':');
        written.AddTwoDigits(parts.Second);
        written.Add(' ');
        written.Add(parts.Hour < 12 ? 'A' : 'P');
        written.Add('M');
    }
    text.append(written.View());
}

double DaysFromAlarmDate(AlarmDate date) {
    const std::int64_t seconds = date.Seconds - AlarmDate::DefaultSeconds;
    const auto days = static_cast<double>(seconds) / SecondsPerDay;
    const double whole = std::floor(days);
    return whole >= 0 ? days : whole - (days - whole);
}

std::optional<std::int64_t> MillisecondsFromDays(double days) {
    if (std::isnan(days))
        return std::nullopt;
    const double whole = std::trunc(days);
    // For an infinity, days - whole would be a NaN.
    const double fraction = std::isinf(days) ? 0.0 : std::fabs(days - whole);
    const double moment = whole + fraction;
    const double milliseconds = (moment * SecondsPerDay + AlarmDate::DefaultSeconds) * 1000.0;
    constexpr double Limit = 9.2e18;
    if (milliseconds >= Limit)
        return std::numeric_limits<std::int64_t>::max();
    if (milliseconds <= -Limit)
        return std::numeric_limits<std::int64_t>::min();
    return std::llround(milliseconds);
}

}  // namespace tallyhorn
