#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "records/AlarmDate.h"

namespace tallyhorn {

/// How dates are shown: the order of day and month and what stands between them, as the user set it.  A plain
/// value, safe in any thread.
struct DateStyle {
    bool DayFirst = false;
    std::string Separator = "/";

    bool operator==(const DateStyle&) const = default;

    /// "MM/dd/yyyy h:nn:ss AM/PM" or the same with the day first, with the separator in place of "/".
    std::string Pattern() const;
};

/// The separator in force for the setting: "/" where it is empty or blank.
std::string DateSeparator(std::string_view setting);

/// The date after `pattern`, in which `dd`, `MM`, `yyyy`, `h` (of twelve), `nn` (minutes), `ss` and `AM/PM`
/// stand for parts and everything else for itself.  Whatever the third character of the result is (the second
/// where that is a digit) then counts as the separator and becomes `separator` wherever it stands.
std::string FormatAlarmDate(AlarmDate date, std::string_view pattern, std::string_view separator);

/// "Jan" to "Dec" for 1 to 12, whatever the system speaks.
const char* ShortMonthName(int month);

/// Orders dates as the texts of FormatAlarmDate for the two usual patterns order: by the first number, the
/// second, the year, then the hour of twelve as a text, with "10:" to "12:" before "1:".
std::uint64_t DateTextOrder(AlarmDate date, bool dayFirst);

/// Minutes since 1970-01-01 00:00, seconds as their fraction.
double AlarmSortKey(AlarmDate date);

/// The sort key with nine digits or more before the point and four after it, e.g. "000000001.5000".
std::string FormatSortKey(AlarmDate date);

}  // namespace tallyhorn
