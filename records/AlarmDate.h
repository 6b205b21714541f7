#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

/// A moment of local time, to the second, as notifications tell it; exact for the years 100 to 9999.
/// A plain value without a time zone, safe in any thread.
struct AlarmDate {
    /// Seconds since 1970-01-01 00:00:00 on the same calendar, negative before it.
    std::int64_t Seconds = DefaultSeconds;

    /// 1899-12-30 00:00, the zero of the dates in the filter file: what a date holds that was never set.
    static constexpr std::int64_t DefaultSeconds = -25569LL * 86400;

    /// Whole days since 1970-01-01.
    std::int64_t Day() const { return (Seconds < 0 ? Seconds - 86399 : Seconds) / 86400; }

    auto operator<=>(const AlarmDate&) const = default;
};

/// The day and time of day that an AlarmDate stands for.
struct CivilDateTime {
    int Year = 1970;
    int Month = 1;
    int Day = 1;
    int Hour = 0;
    int Minute = 0;
    int Second = 0;

    bool operator==(const CivilDateTime&) const = default;
};

/// Nothing where a part is outside its range: the year 100 to 9999, the day within its month.
std::optional<AlarmDate> MakeAlarmDate(const CivilDateTime& parts);
CivilDateTime SplitAlarmDate(AlarmDate date);

/// The hour on a clock of twelve hours, 1 to 12, for an hour of the day from 0 to 23.
constexpr int HourOfTwelve(int hour) {
    return hour % 12 == 0 ? 12 : hour % 12;
}

/// The year that is written with two digits: 00 to 29 are 20xx, the others 19xx.
constexpr int YearOfTwoDigits(int digits) {
    return digits + (digits < 30 ? 2000 : 1900);
}

/// Reads a date in the console's one locale, US English; see ARCHITECTURE.md for the forms.  Stops at the
/// first CR or LF; nothing for any text that is not wholly a date.
bool ReadAlarmDate(std::string_view text, AlarmDate& date);

/// `M/d/yyyy h:mm:ss AM/PM`, or the date alone at midnight; ParseAlarmDate reads it back.
void AppendGeneralDate(std::string& text, AlarmDate date);

/// Days since 1899-12-30 with the time of day as the fraction, the form of the dates in the filter file.
/// Before that day the fraction still counts forward from midnight, so that -1.25 is 1899-12-29 06:00.
double DaysFromAlarmDate(AlarmDate date);

/// The moment that `days` stands for in milliseconds since 1970-01-01, rounded; saturates at the limits of
/// the type, and not-a-number has no moment.
std::optional<std::int64_t> MillisecondsFromDays(double days);

}  // namespace tallyhorn
