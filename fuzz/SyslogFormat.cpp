// Any bytes as a syslog datagram: nothing is read past the end, and what is kept of it is the same record for
// ever after.

#include "records/SyslogFormat.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Require.h"
#include "records/AnsiText.h"
#include "records/CanonicalText.h"
#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

/// What a save to the file and a load from it make of a text.
std::string SavedAndLoaded(const std::string& text) {
    std::string saved(Trim(text));
    std::erase(saved, '\0');
    return saved;
}

void RequireSettled(AlarmRecord alarm) {
    const std::string text = SettleMessage(alarm);
    Require(SavedAndLoaded(text) == text);
    AlarmRecord read;
    ReadStoredText(text, true, AlarmDate{1}, read);
    Require(read == alarm);
    Require(SettleMessage(read) == text);
    Require(read == alarm);
}

}  // namespace
}  // namespace tallyhorn

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tallyhorn;
    // A block of its own, so that a read past the end is seen.
    const std::string text(reinterpret_cast<const char*>(data), size);
    const bool dayFirst = size % 2 == 0;
    // Carried over from datagram to datagram, as the console does.
    static AlarmRecord carried;
    IsAlarmNotification(text);
    ParseSyslogText(text, dayFirst, AlarmDate{}, carried);
    Require(!Trim(carried.AlarmName).empty());
    Require(EventTypeDisplayName(carried.TypeOfEvent) == carried.TypeOfEvent);
    AlarmRecord again = carried;
    ParseSyslogText(text, dayFirst, AlarmDate{}, again);
    Require(again == carried);
    RequireSettled(carried);
    return 0;
}
