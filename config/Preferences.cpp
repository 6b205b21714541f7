#include "config/Preferences.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "config/Settings.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::string_view PortNotNumericText = "You must set the UDP Port to a numeric value.";
constexpr std::string_view ResetQuestion =
    "Are you sure you want to reset the main window dimensions and column widths?";

constexpr std::int32_t LastUdpPort = 65535;

bool FitsIn16Bits(std::int32_t number) {
    return number >= std::numeric_limits<std::int16_t>::min() &&
           number <= std::numeric_limits<std::int16_t>::max();
}

/// Returns whether the text is a decimal number: digits, optionally with a sign, a decimal point, and blanks
/// around them.  Other notations, such as 0x202 or 1e3, are refused, because the profile functions would read
/// a different number from them.
bool IsNumeric(std::string_view text) {
    text = Trim(text);
    if (text.starts_with('-') || text.starts_with('+'))
        text.remove_prefix(1);
    const auto digits = std::count_if(text.begin(), text.end(), IsDigit);
    const auto points = std::count(text.begin(), text.end(), '.');
    return digits > 0 && points <= 1 && digits + points == static_cast<std::ptrdiff_t>(text.size());
}

}  // namespace

PreferenceFields Preferences::Load() {
    const Settings settings = ReadSettings(parts_.Profile);
    shownPort_ = ReadSyslogPort(parts_.Profile);
    return {.Port = std::to_string(shownPort_),
            .Seperator = settings.Seperator,
            .ShowTab = VisibleMessageViews(settings.MessageViews),
            .Sound = settings.SoundOn,
            .DayFirst = settings.DateTime != 0};
}

bool Preferences::Validate(const PreferenceFields& fields) {
    if (IsNumeric(fields.Port))
        return true;
    parts_.Boxes.Warn(PortNotNumericText);
    return false;
}

bool Preferences::Save(const PreferenceFields& fields) {
    if (!SavePort(fields.Port))
        return false;
    WriteSetting(parts_.Profile, "Seperator", fields.Seperator);
    parts_.Host.SetSeperator(fields.Seperator);
    SaveSound(fields.Sound);
    SaveTabs(fields.ShowTab);
    WriteSetting(parts_.Profile, "DateTime", fields.DayFirst ? "1" : "0");
    parts_.Host.SetDateTime(fields.DayFirst ? 1 : 0);
    return true;
}

bool Preferences::IsOpenedBySave(std::int32_t port) const {
    return FitsIn16Bits(port) || (port == shownPort_ && !parts_.Host.ListeningPort());
}

std::string_view Preferences::NoteAbout(const std::string& port) const {
    if (!IsNumeric(port))
        return "";
    std::int32_t number = 0;
    if (!ReadInt32(port, number) || number < 0 || number > LastUdpPort)
        return "This is no UDP port: ports are 0 to 65535";
    return IsOpenedBySave(number) || number == parts_.Host.ListeningPort() ? "" : "Used from the next start";
}

/// Writes the port as the user typed it (for example " 514 "), but compares and stores it as a number.
bool Preferences::SavePort(const std::string& text) {
    std::int32_t port = 0;
    if (!ReadInt32(text, port))
        return false;
    if (port == shownPort_) {
        if (!parts_.Host.ListeningPort())
            parts_.Host.InitializeWinsock();
        return true;
    }
    WriteSetting(parts_.Profile, "SyslogUDPPort", text);
    if (!FitsIn16Bits(port))
        return false;
    shownPort_ = port;
    parts_.Host.InitializeWinsock();
    return true;
}

void Preferences::SaveSound(bool on) {
    WriteSetting(parts_.Profile, "SoundOn", on ? "1" : "0");
    parts_.Host.SetSoundOn(on);
}

void Preferences::SaveTabs(const std::array<bool, 3>& shown) {
    std::int32_t mask = 0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (shown[i])
            mask += 1 << i;
        parts_.Host.ShowTab(static_cast<int>(i), shown[i]);
    }
    WriteSetting(parts_.Profile, "MessageViews", std::to_string(mask));
}

void Preferences::Reset() {
    if (!parts_.Boxes.Confirm(ResetQuestion))
        return;
    WriteSizes(parts_.Profile, Settings());
    parts_.Host.ForgetSizes();
    parts_.Host.MaximizeWindow();
    parts_.Host.ShareOutColumnWidths();
    parts_.Events.Run();
}

}  // namespace tallyhorn
