#pragma once

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Returns a record in which no field has its default value and no two texts are the same.
inline AlarmRecord SampleRecord() {
    return {AlarmDate{1}, "name", "log",     "source",   "type",
            "category",   42,     "ACCOUNT", "COMPUTER", "text\r\nmore"};
}

}  // namespace tallyhorn
