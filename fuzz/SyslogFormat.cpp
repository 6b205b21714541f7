// Parses arbitrary bytes as a syslog datagram.  Nothing may be read past the end, and the kept text must give
// the same record however often it is saved and loaded.

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

/// Returns the text as it would be after it was saved to the backup file and loaded again.
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
    // A separate heap block, so that AddressSanitizer sees a read past the end.
    const std::string text(reinterpret_cast<const char*>(data), size);
    const bool dayFirst = size % 2 == 0;
    // The console too reuses the record of the previous datagram.
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
