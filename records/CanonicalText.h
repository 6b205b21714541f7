#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "records/AlarmRecord.h"

namespace tallyhorn {

// The message text is the form in which the console keeps syslog notifications: ten labelled lines that end
// with CR LF.  The description begins on the line after its label:
//
//     Date: 8/21/2008 2:05:09 PM
//     Alarm Name: Logon failed
//     ...
//     Computer: LON-DC-1
//     Description:
//     Unknown user name

std::string BuildMessageText(const AlarmRecord& alarm);

/// Reads a message text into `alarm`.  Returns false and leaves `alarm` unchanged for any other text.
///
/// Labels are searched for in the order of the lines, and a field ends at the first line that begins with the
/// next label.  "EventID: " is accepted only before a number that is written as BuildMessageText writes it,
/// and only if the account's line comes next.  Fields are neither trimmed nor converted.
bool ReadMessageText(std::string_view text, AlarmRecord& alarm);

/// The largest size of a message text.  The backup file stores the size of each text in five digits; after a
/// longer text, nothing in the file could be read back.  Datagrams are shorter than this, but a record can
/// keep fields of the previous datagram, which can make the text longer.
constexpr std::size_t LongestMessageText = 99'999;

/// Returns the message text of `alarm` and changes `alarm` to the record that ReadMessageText reads from that
/// text, so that a message looks the same before and after a restart.  Another call with the resulting
/// `alarm` changes nothing.
///
/// - The type becomes EventTypeDisplayName(EventTypeIconKey(type)).
/// - NULs and trailing blanks of the description are removed, since the backup does not keep them.
/// - A field ends at a line in it that looks like the label of the next field.  Example: with the alarm name
///   "a\r\nLog Type: b" and the log type "c", the text contains "Log Type: " twice, and reading it gives the
///   alarm name "a" and the log type "b\r\nLog Type: c".
/// - A text longer than LongestMessageText loses the end of its description, then the ends of its longest
///   fields.
std::string SettleMessage(AlarmRecord& alarm);

}  // namespace tallyhorn
