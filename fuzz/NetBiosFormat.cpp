// Parses arbitrary bytes as a NetBIOS notification.  Nothing may be read past the end, and the fields of the
// record must survive formatting and parsing again.

#include "records/NetBiosFormat.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Require.h"
#include "records/EventTypes.h"
#include "tests/support/DateTexts.h"

namespace tallyhorn {
namespace {

/// Requires that a notification made of the record's fields gives the same record.
void RequireReadsBack(const AlarmRecord& alarm) {
    const std::string text = "Date: \r\n\r\n\r\n(" + alarm.AlarmName + ")\r\n\r\n\r\n: " + alarm.LogType +
                             "\r\n: " + alarm.Source + "\r\n: " + alarm.TypeOfEvent +
                             "\r\n: " + alarm.Category + "\r\n: " + std::to_string(alarm.EventID) +
                             "\r\n: " + alarm.AccountName + "\r\n: " + alarm.Computer +
                             "\r\n: " + alarm.Description;
    AlarmRecord read;
    read.DateTime = alarm.DateTime;
    ParseCurrentAlarm(text, read);
    Require(read == alarm);
}

}  // namespace
}  // namespace tallyhorn

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tallyhorn;
    // A separate heap block, so that AddressSanitizer sees a read past the end.
    const std::string text(reinterpret_cast<const char*>(data), size);
    static AlarmRecord carried;
    ParseCurrentAlarm(text, carried);
    AlarmRecord again = carried;
    ParseCurrentAlarm(text, again);
    Require(again == carried);
    const std::string key = EventTypeIconKey(carried.TypeOfEvent);
    // The icon key, which a shown alarm keeps as its type, denotes the same type as the original text.
    Require(EventTypeOf(carried.TypeOfEvent) == EventTypeOf(key));
    // The displayed name denotes the same type too.
    Require(EventTypeIconKey(EventTypeDisplayName(carried.TypeOfEvent)) == key);
    Require(ParseAlarmDate(FormatGeneralDate(carried.DateTime)) == carried.DateTime);
    RequireReadsBack(carried);
    return 0;
}
