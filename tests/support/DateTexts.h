#pragma once

#include "records/AlarmDate.h"

namespace tallyhorn {

// Functions of records/AlarmDate.h that return their results, so that expectations can compare them.

inline std::optional<AlarmDate> ParseAlarmDate(std::string_view text) {
    AlarmDate date;
    return ReadAlarmDate(text, date) ? std::optional(date) : std::nullopt;
}

inline std::string FormatGeneralDate(AlarmDate date) {
    std::string text;
    AppendGeneralDate(text, date);
    return text;
}

}  // namespace tallyhorn
