#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

/// A moment in whole seconds of local time, without a time zone, because notifications contain none.  Valid
/// for the years 100 to 9999.
struct AlarmDate {
    /// Seconds since 1970-01-01 00:00:00 local time; negative for earlier moments.
    std::int64_t Seconds = DefaultSeconds;

    /// The value of a date that was never set: 1899-12-30 00:00, which is 0 in the filter file.
    static constexpr std::int64_t DefaultSeconds = -25569LL * 86400;

    /// Returns the number of days since 1970-01-01, rounded down: -1 for 1969-12-31 at any time of day.
    std::int64_t Day() const { return (Seconds < 0 ? Seconds - 86399 : Seconds) / 86400; }

    auto operator<=>(const AlarmDate&) const = default;
};

/// An AlarmDate split into calendar fields.
struct CivilDateTime {
    int Year = 1970;
    int Month = 1;
    int Day = 1;
    int Hour = 0;
    int Minute = 0;
    int Second = 0;

    bool operator==(const CivilDateTime&) const = default;
};

/// Returns nothing if a field is out of range: years run from 100 to 9999, and the day must exist in the
/// month.
std::optional<AlarmDate> MakeAlarmDate(const CivilDateTime& parts);
CivilDateTime SplitAlarmDate(AlarmDate date);

/// Returns the hour on a twelve-hour clock, 1 to 12, for an hour of the day from 0 to 23.
constexpr int HourOfTwelve(int hour) {
    return hour % 12 == 0 ? 12 : hour % 12;
}

/// Returns the full year for a year of two digits: 2000 to 2029 for 0 to 29, 1930 to 1999 for 30 to 99.
constexpr int YearOfTwoDigits(int digits) {
    return digits + (digits < 30 ? 2000 : 1900);
}

/// Reads a date in US English form into `date`; docs/decisions.md lists the accepted forms.  The text ends at
/// its first CR or LF.  Returns false and leaves `date` unchanged unless the whole text up to that end is a
/// date.
bool ReadAlarmDate(std::string_view text, AlarmDate& date);

/// Appends the date as `M/d/yyyy h:mm:ss AM/PM`, or as `M/d/yyyy` if its time is 00:00:00.  ReadAlarmDate
/// accepts both forms.
void AppendGeneralDate(std::string& text, AlarmDate date);

/// Returns the days since 1899-12-30 with the time of day as fraction, as the filter file stores dates.
/// compatibility: the fraction counts forward from midnight even in a negative number, so -1.25 is 1899-12-29
/// 06:00, because existing filter files contain such dates.
double DaysFromAlarmDate(AlarmDate date);

/// Converts `days`, in the form that DaysFromAlarmDate returns, to milliseconds since 1970-01-01, rounded and
/// clamped to the limits of 64 bits.  Returns nothing for a NaN.
std::optional<std::int64_t> MillisecondsFromDays(double days);

}  // namespace tallyhorn
