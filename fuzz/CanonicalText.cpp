// Reads arbitrary bytes as the text of a kept message.  Nothing may be read past the end, a text in another
// layout must leave the record unchanged, and the fields of a valid text must give that text again, except
// for the spelling of the date.

#include "records/CanonicalText.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Require.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

AlarmRecord Before() {
    return {AlarmDate{1}, "name", "log", "source", "type", "category", 42, "ACCOUNT", "COMPUTER", "text"};
}

void RequireSameButForDate(const std::string& written, const std::string& text) {
    Require(written.substr(written.find('\r')) == text.substr(text.find('\r')));
}

void RequireReadsBack(const AlarmRecord& alarm, const std::string& text) {
    AlarmRecord read;
    Require(ReadMessageText(text, read));
    Require(read == alarm);
}

}  // namespace
}  // namespace tallyhorn

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tallyhorn;
    const std::string text(reinterpret_cast<const char*>(data), size);
    AlarmRecord alarm = Before();
    if (!ReadMessageText(text, alarm)) {
        Require(alarm == Before());
        return 0;
    }
    const std::string written = BuildMessageText(alarm);
    RequireSameButForDate(written, text);
    RequireReadsBack(alarm, written);
    const std::string settled = SettleMessage(alarm);
    Require(settled.find('\0') == std::string::npos);
    Require(Trim(settled) == settled);
    RequireReadsBack(alarm, settled);
    return 0;
}
