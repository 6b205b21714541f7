#pragma once

#include <cstdint>
#include <string>

#include "records/AlarmDate.h"

namespace tallyhorn {

/// The ten fields of a notification, in the column order of an export.  Texts are Windows-1252.  The parsers
/// leave a field unchanged if the notification has no valid value for it.
struct AlarmRecord {
    AlarmDate DateTime;
    std::string AlarmName;
    std::string LogType;
    std::string Source;
    std::string TypeOfEvent;
    std::string Category;
    std::int32_t EventID = 0;
    std::string AccountName;  ///< the parsers store it in upper case
    std::string Computer;     ///< the parsers store it in upper case
    std::string Description;

    bool operator==(const AlarmRecord&) const = default;
};

}  // namespace tallyhorn
