// Any bytes as a NetBIOS notification: nothing is read past the end, and what a record takes in it can show.

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

/// A notification that carries the record's fields gives the same record.
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
    // A block of its own, so that a read past the end is seen.
    const std::string text(reinterpret_cast<const char*>(data), size);
    static AlarmRecord carried;
    ParseCurrentAlarm(text, carried);
    AlarmRecord again = carried;
    ParseCurrentAlarm(text, again);
    Require(again == carried);
    const std::string key = EventTypeIconKey(carried.TypeOfEvent);
    Require(EventTypeListIndex(carried.TypeOfEvent) == ListForIconKey(key));
    // A name for the screen stands for the same type.
    Require(EventTypeIconKey(EventTypeDisplayName(carried.TypeOfEvent)) == key);
    Require(ParseAlarmDate(FormatGeneralDate(carried.DateTime)) == carried.DateTime);
    RequireReadsBack(carried);
    return 0;
}
