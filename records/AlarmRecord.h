#pragma once

#include <cstdint>
#include <string>

#include "records/AlarmDate.h"

namespace tallyhorn {

/// One alarm notification in ten fields, in the order of the export header; texts are ANSI bytes as they
/// arrived.  A plain value: the parsers fill it, and a field that a parse cannot set keeps what it held.
struct AlarmRecord {
    AlarmDate DateTime;
    std::string AlarmName;
    std::string LogType;
    std::string Source;
    std::string TypeOfEvent;
    std::string Category;
    std::int32_t EventID = 0;
    std::string AccountName;  ///< upper case after a parse
    std::string Computer;     ///< upper case after a parse
    std::string Description;

    bool operator==(const AlarmRecord&) const = default;
};

}  // namespace tallyhorn
