#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tallyhorn {

class PrivateProfile;

/// The settings in memory while the console runs.  Members have the names of the keys in the settings file.
/// Widths and heights are in twips (1/1440 inch); 0 means that no value is stored.
struct Settings {
    /// 0: dates are shown month first; any other value: day first.
    std::int32_t DateTime = 0;
    /// The text between day, month and year, as the user typed it.  compatibility: spelled as the key.
    std::string Seperator;
    /// The size of the main window.  compatibility: named as the keys.
    std::int32_t CPWidth = 0;
    std::int32_t CPHeight = 0;
    std::array<std::int32_t, 5> ColumnWidths{};
    bool SoundOn = false;
    /// One bit for each tab of the main window, set if the tab is shown.  Bit 0 is the leftmost tab.
    std::int32_t MessageViews = 0;

    bool operator==(const Settings&) const = default;
};

/// Reads all settings from the section "General".  A missing key has the value 0 or "".
Settings ReadSettings(PrivateProfile& profile);

/// Returns the number of the UDP port for syslog from the settings file, without checking its range.
std::int32_t ReadSyslogPort(PrivateProfile& profile);

/// Returns for each of the three tabs whether it is shown.
std::array<bool, 3> VisibleMessageViews(std::int32_t messageViews);

/// Writes one key of the section "General".  Ignores errors.
void WriteSetting(PrivateProfile& profile, const std::string& key, const std::string& value);

/// Writes the window's size and the column widths, and no other key.
void WriteSizes(PrivateProfile& profile, const Settings& settings);

}  // namespace tallyhorn
