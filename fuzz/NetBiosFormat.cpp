// Any bytes as a NetBIOS notification: nothing is read past the end, and what a record takes in it can show.

#include "records/NetBiosFormat.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "records/CanonicalText.h"
#include "records/EventTypes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tallyhorn;
    // A block of its own, so that a read past the end is seen.
    const std::string text(reinterpret_cast<const char*>(data), size);
    static AlarmRecord carried;
    ParseCurrentAlarm(text, carried);
    AlarmRecord again = carried;
    ParseCurrentAlarm(text, again);
    if (again != carried)
        std::abort();
    const std::int16_t list = EventTypeListIndex(carried.TypeOfEvent);
    if (list < 0 || list >= EventListCount || EventTypeIconKey(carried.TypeOfEvent).empty())
        std::abort();
    if (ParseAlarmDate(FormatGeneralDate(carried.DateTime)) != carried.DateTime)
        std::abort();
    if (BuildMessageText(carried).size() < carried.Description.size())
        std::abort();
    return 0;
}
