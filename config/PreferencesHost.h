#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyhorn {

/// The port through which the preferences dialog changes the running console.  The dialog writes the settings
/// file itself.
class PreferencesHost {
public:
    virtual ~PreferencesHost() = default;

    /// Handles the datagrams that have already arrived, closes the syslog endpoint and opens it on the port
    /// that the settings file names.  If that fails, the console reports it after the dialog has closed.
    virtual void InitializeWinsock() = 0;
    /// Returns the UDP port at which the syslog endpoint listens, or nothing if it listens at none.
    virtual std::optional<std::int32_t> ListeningPort() const = 0;

    // The following functions change the settings that the console holds in memory.

    /// `seperator` is the text as typed; it may be empty.
    virtual void SetSeperator(std::string_view seperator) = 0;
    /// Switches the alert sound on or off, and sets the check mark of "&Sound" in the notification-area menu
    /// accordingly.
    virtual void SetSoundOn(bool on) = 0;
    /// Sets the order of dates: 0 for month first, 1 for day first.
    virtual void SetDateTime(std::int32_t order) = 0;
    /// Shows or hides a tab.  `tab` is 0 to 2, counted from the left.
    virtual void ShowTab(int tab, bool shown) = 0;
    /// Sets the window's stored size and all stored column widths to 0.
    virtual void ForgetSizes() = 0;

    virtual void MaximizeWindow() = 0;
    /// Gives columns 1 to 5 of all six lists their stored widths.  A column with the stored width 0 gets its
    /// default share of the list's current width.
    virtual void ShareOutColumnWidths() = 0;
};

}  // namespace tallyhorn
