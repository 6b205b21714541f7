#pragma once

#include <string_view>

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Returns whether a datagram is an alarm notification: whether it contains "Event " and a ":".
bool IsAlarmNotification(std::string_view text);

/// Reads a syslog datagram into `alarm`.  Its form is
///
///     ... (AlarmName) ... : LogType Log, DateTime, Source, TypeOfEvent, Category, EventID, AccountName,
///     Computer, Description
///
/// The name ends at the first ")".  The fields begin after the first ":" that follows the name, or after the
/// first ":" of the text if there are no parentheses.  If the delimiter of a field is missing, that field and
/// all later ones keep their values; if only the day or the event id is invalid, only that field keeps its
/// value.  A test message and a notification without a name get the date `now`.
///
/// The date has six numbers: month and day (day and month if `dayFirst` is set), year, hour, minute, second;
/// AM or PM may follow.  They are separated by "/", ":", a blank, or the date's own separator, which is the
/// character after its first one or two digits.  A part of the time that is missing or out of range counts as
/// 0.  A date that begins with a year of four digits has the form "2008-08-21 14:05:09" or
/// "2008-08-21T14:05:09", in which "/" or another character may replace "-".
void ParseSyslogText(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm);

/// Reads the text of a syslog message that the console keeps: a message text, or a datagram if it comes from
/// a backup file that another program wrote.
void ReadStoredText(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm);

}  // namespace tallyhorn
