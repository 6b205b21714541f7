#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "records/AlarmRecord.h"

namespace tallyhorn {

// The one text in which the console keeps a notification that did not arrive in the NetBIOS layout: ten
// labelled lines ended by CR LF, the description on the lines after its label.  Pure functions, safe in any
// thread.

/// The type is written as it stands in the record.
std::string BuildMessageText(const AlarmRecord& alarm);

/// Reads such a text; false, and `alarm` stays, for any other.  Each label counts at the first line's start
/// where it fits, that of the EventID only with a number behind it that BuildMessageText could have written
/// and the account's line after that.  Fields are taken as they stand.
bool ReadMessageText(std::string_view text, AlarmRecord& alarm);

/// A longer text's length would not fit where the backup has it, and all that stands behind it could not be
/// read back.  No datagram is that long, but fields kept from one before may make a text that is.
constexpr std::size_t LongestMessageText = 99'999;

/// The text to keep for `alarm`, which becomes exactly the record that the text tells, so that what is shown
/// now is what is shown after the text was saved and read back; settling that again changes nothing.
///
/// The type gets the form of EventTypeDisplayName(EventTypeIconKey(type)).  NULs and the description's
/// trailing blanks go, since saving drops them.  A field that holds other fields' labels at the start of a
/// line is cut there.  A text that would be too long loses the end of its description, then of its longest
/// fields.
std::string SettleMessage(AlarmRecord& alarm);

}  // namespace tallyhorn
