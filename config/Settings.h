#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tallyhorn {

class PrivateProfile;

/// The settings in memory while the console runs.  Members are named as the keys in the settings file. Widths
/// and heights are in twips (1/1440 inch); 0 means that none is stored.
struct Settings {
    /// 0: dates are shown month first; any other value: day first.
    std::int32_t DateTime = 0;
    /// compatibility: spelled as the key.  The text between day, month and year as typed.
    std::string Seperator;
    /// compatibility: CPWidth and CPHeight, the size of the main window, are named as the keys.
    std::int32_t CPWidth = 0;
    std::int32_t CPHeight = 0;
    std::array<std::int32_t, 5> ColumnWidths{};
    bool SoundOn = false;
    /// The tabs of the main window that are shown, one bit for each; bit 0 is the leftmost tab.
    std::int32_t MessageViews = 0;

    bool operator==(const Settings&) const = default;
};

/// Reads all settings from the section "General".  Keys that are missing give 0 or "".
Settings ReadSettings(PrivateProfile& profile);

/// Returns the UDP port for syslog as written in the file, without checking its range.
std::int32_t ReadSyslogPort(PrivateProfile& profile);

/// Returns for each of the three tabs whether it is shown.
std::array<bool, 3> VisibleMessageViews(std::int32_t messageViews);

/// Writes one key of the section "General".  Ignores a write that fails.
void WriteSetting(PrivateProfile& profile, const std::string& key, const std::string& value);

/// Writes the window's size and the column widths, and no other key.
void WriteSizes(PrivateProfile& profile, const Settings& settings);

}  // namespace tallyhorn
