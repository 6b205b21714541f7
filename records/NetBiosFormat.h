#pragma once

#include <string_view>

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Reads a NetBIOS notification into `alarm`.  Only the position of a line and of its first ":" counts,
/// labels are never compared; a field whose line is missing or does not convert keeps what it held, so that
/// one record serves from notification to notification.  Pure and safe in any thread.
///
/// Lines end with CR LF.  Line 1 holds the date, in the 20 characters from the 7th on; line 4 the alarm's
/// name between its first "(" and its last ")"; lines 7 to 13 LogType, Source, TypeOfEvent, Category,
/// EventID, AccountName and Computer; line 14 and all that follows the description.
void ParseCurrentAlarm(std::string_view text, AlarmRecord& alarm);

}  // namespace tallyhorn
