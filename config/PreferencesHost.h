#pragma once

#include <cstdint>
#include <string_view>

namespace tallyhorn {

/// What the preferences change in the running console, besides the file.  Called from the user-interface
/// thread.
class PreferencesHost {
public:
    virtual ~PreferencesHost() = default;

    /// Sets the syslog endpoint up again; the port stands in the settings file.  A failure is the console's
    /// to tell, so a message box may stand open meanwhile.
    virtual void InitializeWinsock() = 0;

    // The settings shared by the console, as they are held in memory.  None lets events run.

    /// As it was typed, an empty one too.
    virtual void SetSeperator(std::string_view seperator) = 0;
    /// The flag, and the check mark beside "&Sound" in the notification area's menu.
    virtual void SetSoundOn(bool on) = 0;
    /// 0: month first, 1: day first.
    virtual void SetDateTime(std::int32_t order) = 0;
    /// The main window's tab, 0 to 2 from the left.
    virtual void ShowTab(int tab, bool shown) = 0;
    /// No width, height or column width is stored any more: all are 0.
    virtual void ForgetSizes() = 0;

    virtual void MaximizeWindow() = 0;
    /// Columns 1 to 5 of all six lists take their shares of the list's present width, as they do where no
    /// widths are stored.
    virtual void ShareOutColumnWidths() = 0;
};

}  // namespace tallyhorn
