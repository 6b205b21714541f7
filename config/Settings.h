#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tallyhorn {

class PrivateProfile;

/// The settings as the console holds them while it runs; a plain value.  Widths and heights are in the window
/// layout's units, and 0 means that none is stored.
struct Settings {
    /// 0: dates are shown month first; anything else: day first.
    std::int32_t DateTime = 0;
    /// Between day, month and year, as it was typed; the display of dates says what an empty one means.
    std::string Seperator;
    std::int32_t CPWidth = 0;
    std::int32_t CPHeight = 0;
    std::array<std::int32_t, 5> ColumnWidths{};
    bool SoundOn = false;
    /// A bit for each of the main window's three tabs, from the left.
    std::int32_t MessageViews = 0;

    bool operator==(const Settings&) const = default;
};

/// Reads every key of the section "General"; one that is missing gives 0 or "".
Settings ReadSettings(PrivateProfile& profile);

/// The UDP port for syslog, as it stands in the file: no number there is refused here.
std::int32_t ReadSyslogPort(PrivateProfile& profile);

/// Which of the three tabs are shown.
std::array<bool, 3> VisibleMessageViews(std::int32_t messageViews);

/// Writes one key of the section "General".  A write that fails is passed over.
void WriteSetting(PrivateProfile& profile, const std::string& key, const std::string& value);

/// Writes the window's size and the column widths, and no other key.
void WriteSizes(PrivateProfile& profile, const Settings& settings);

}  // namespace tallyhorn
