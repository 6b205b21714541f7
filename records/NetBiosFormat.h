#pragma once

#include <string_view>

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Reads a NetBIOS notification into `alarm`.  A field keeps its value if its line is missing or invalid.
///
/// Lines end with CR LF and are found by their number; labels are not compared.  Line 1 contains the date in
/// its characters 7 to 26, or to 28 for a longer date.  Line 4 contains the alarm name between its first "("
/// and its last ")".  Lines 7 to 13 contain LogType, Source, TypeOfEvent, Category, EventID, AccountName and
/// Computer, and everything from line 14 on is the description.  In lines 7 to 14 the value begins two
/// characters after the first ":".
void ParseCurrentAlarm(std::string_view text, AlarmRecord& alarm);

}  // namespace tallyhorn
