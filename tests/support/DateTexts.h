#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "records/AlarmDate.h"

namespace tallyhorn {

// The functions of records/AlarmDate.h in the form that suits expectations: values in, values out.

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
