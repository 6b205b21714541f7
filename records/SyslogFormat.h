#pragma once

#include <string_view>

#include "records/AlarmRecord.h"

namespace tallyhorn {

// What a syslog datagram tells and what a stored text tells.  Pure functions, safe in any thread.

/// Whether a datagram is an alarm notification at all: it holds "Event " and a ":".
bool IsAlarmNotification(std::string_view text);

/// Reads a datagram into `alarm`: the alarm's name between the first "(" and the next ")", then from the
/// first
/// ":" after that (of the text, where there are no such parentheses) LogType with " Log" behind it, DateTime,
/// Source, TypeOfEvent, Category, EventID, AccountName and Computer, each ended by ",", and the description.
/// A field whose delimiter is missing keeps what it held, and so do all after it; a date or number that does
/// not read keeps its own value alone.  A test message, and one without a name, happened at `now`.
///
/// The date is month, day (or day, month), year, hour, minute, second and perhaps AM or PM, one of the
/// separators "/", ":", blank and the date's own between each two; all six numbers must be there.
void ParseSyslogText(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm);

/// Reads a text that was kept: as a message text, which gives back the record that was stored, or as a
/// datagram where it is none, since another program may have written it.
void ReadStoredText(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm);

}  // namespace tallyhorn
