#include "records/DateDisplay.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// Appends the value of the placeholder at the start of `pattern`.  Returns the length of that placeholder,
/// or 0 if the pattern does not start with one.
std::size_t AppendPart(std::string& text, std::string_view pattern, const CivilDateTime& parts) {
    if (pattern.starts_with("AM/PM")) {
        text += parts.Hour < 12 ? "AM" : "PM";
        return 5;
    }
    if (pattern.starts_with("yyyy")) {
        text += PadWithZeros(std::to_string(parts.Year), 4);
        return 4;
    }
    struct TwoDigits {
        std::string_view Name;
        int Number;
    };
    for (const TwoDigits& part : {TwoDigits{"dd", parts.Day}, TwoDigits{"MM", parts.Month},
                                  TwoDigits{"nn", parts.Minute}, TwoDigits{"ss", parts.Second}}) {
        if (pattern.starts_with(part.Name)) {
            text += PadWithZeros(std::to_string(part.Number), 2);
            return 2;
        }
    }
    if (!pattern.starts_with('h'))
        return 0;
    text += std::to_string(HourOfTwelve(parts.Hour));
    return 1;
}

std::string Format(const CivilDateTime& parts, std::string_view pattern) {
    std::string text;
    while (!pattern.empty()) {
        std::size_t taken = AppendPart(text, pattern, parts);
        if (taken == 0) {
            text += pattern.front();
            taken = 1;
        }
        pattern.remove_prefix(taken);
    }
    return text;
}

std::string ReplaceAll(std::string_view text, char wanted, std::string_view replacement) {
    std::string result;
    for (const char character : text) {
        if (character == wanted)
            result += replacement;
        else
            result += character;
    }
    return result;
}

}  // namespace

std::string DateStyle::Pattern() const {
    const char* const first = DayFirst ? "dd" : "MM";
    const char* const second = DayFirst ? "MM" : "dd";
    return first + Separator + second + Separator + "yyyy h:nn:ss AM/PM";
}

std::string DateSeparator(std::string_view setting) {
    return Trim(setting).empty() ? "/" : std::string(setting);
}

std::string FormatAlarmDate(AlarmDate date, std::string_view pattern, std::string_view separator) {
    std::string text = Format(SplitAlarmDate(date), pattern);
    if (text.size() < 3)
        return text;
    const char written = IsDigit(text[2]) ? text[1] : text[2];
    if (separator.size() == 1 && separator.front() == written)
        return text;
    return ReplaceAll(text, written, separator);
}

const char* ShortMonthName(int month) {
    constexpr std::array<const char*, 12> Names = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return Names.at(static_cast<std::size_t>(month - 1));
}

std::uint64_t DateTextOrder(AlarmDate date, bool dayFirst) {
    const CivilDateTime parts = SplitAlarmDate(date);
    const int hour = HourOfTwelve(parts.Hour);
    const int hourRank = hour >= 10 ? hour - 10 : hour + 2;
    std::uint64_t order = 0;
    const auto append = [&order](int number, unsigned limit) {
        order = order * limit + static_cast<unsigned>(number);
    };
    append(dayFirst ? parts.Day : parts.Month, 100);
    append(dayFirst ? parts.Month : parts.Day, 100);
    append(parts.Year, 10000);
    append(hourRank, 12);
    append(parts.Minute, 60);
    append(parts.Second, 60);
    append(parts.Hour < 12 ? 0 : 1, 2);
    return order;
}

double AlarmSortKey(AlarmDate date) {
    // A double holds the seconds of every valid date exactly, so only the division rounds.
    return static_cast<double>(date.Seconds) / 60.0;
}

std::string FormatSortKey(AlarmDate date) {
    std::array<char, 64> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), date.Seconds < 0 ? "%015.4f" : "%014.4f",
                                     AlarmSortKey(date));
    return {buffer.data(), static_cast<std::size_t>(length)};
}

}  // namespace tallyhorn
