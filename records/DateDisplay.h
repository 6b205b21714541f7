#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "records/AlarmDate.h"

namespace tallyhorn {

/// The user's settings for displayed dates: the order of day and month, and the text between the numbers.
struct DateStyle {
    bool DayFirst = false;
    std::string Separator = "/";

    bool operator==(const DateStyle&) const = default;

    /// Returns the pattern for FormatAlarmDate: "MM/dd/yyyy h:nn:ss AM/PM", or "dd/MM/yyyy ..." if DayFirst
    /// is set, with Separator in place of "/".
    std::string Pattern() const;
};

/// Returns the separator to use for the setting: "/" if the setting is empty or blank.
std::string DateSeparator(std::string_view setting);

/// Formats the date by `pattern`: `dd`, `MM`, `yyyy`, `h` (1 to 12), `nn` (minutes), `ss` and `AM/PM` are
/// replaced; other characters are copied.
///
/// compatibility: after that, the third character of the result, or the second if the third is a digit,
/// counts as the old separator, and each occurrence of that character is replaced by `separator`.  With the
/// pattern "MM dd h" and the separator "-", "08 21 2" becomes "08-21-2".  This determines what the user sees
/// if the separator is not exactly one character long.
std::string FormatAlarmDate(AlarmDate date, std::string_view pattern, std::string_view separator);

/// Returns "Jan" to "Dec" for 1 to 12, in English on every system.
const char* ShortMonthName(int month);

/// Returns a number by which dates sort as their displayed texts do: by the first number, the second number,
/// the year, and then the hour as text, so that "10:" to "12:" come before "1:".
std::uint64_t DateTextOrder(AlarmDate date, bool dayFirst);

/// Returns the minutes since 1970-01-01 00:00, with the seconds as fraction.
double AlarmSortKey(AlarmDate date);

/// Returns AlarmSortKey as text, with at least nine digits before the point and four after it, for example
/// "000000001.5000".
std::string FormatSortKey(AlarmDate date);

}  // namespace tallyhorn
