#pragma once

#include <cstdint>
#include <string_view>

namespace tallyhorn {

/// The port through which the preferences dialog changes the running console.  The settings file is changed
/// separately.
class PreferencesHost {
public:
    virtual ~PreferencesHost() = default;

    /// Handles the datagrams that have already arrived, closes the syslog endpoint and opens it on the port
    /// that the settings file names.  The console reports a failure once the dialog has closed.
    virtual void InitializeWinsock() = 0;

    // The following functions change the settings that the console holds in memory.

    /// `seperator` is the text as typed; it may be empty.
    virtual void SetSeperator(std::string_view seperator) = 0;
    /// Switches the alert sound on or off, and sets the check mark at "&Sound" in the notification-area menu.
    virtual void SetSoundOn(bool on) = 0;
    /// 0: month first, 1: day first.
    virtual void SetDateTime(std::int32_t order) = 0;
    /// `tab` is 0 to 2, from the left.
    virtual void ShowTab(int tab, bool shown) = 0;
    /// Sets the window's stored size and all stored column widths to 0.
    virtual void ForgetSizes() = 0;

    virtual void MaximizeWindow() = 0;
    /// Gives columns 1 to 5 of all six lists the stored widths; for a width of 0, the column's default share
    /// of the list's present width.
    virtual void ShareOutColumnWidths() = 0;
};

}  // namespace tallyhorn
