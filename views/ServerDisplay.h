#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tallyhorn {

/// The pages of the main window's tab control, by index.
enum class MessagePage : std::int16_t { NetBios = 0, Syslog = 1, Consolidated = 2 };
constexpr int MessagePageCount = 3;

/// The view that the user touched last: a NetBIOS list by its index, a syslog list by its index plus 3, or
/// the consolidated tree.
using ViewNumber = std::int16_t;
constexpr ViewNumber FirstSyslogView = 3;
constexpr ViewNumber ConsolidatedView = 6;

constexpr bool IsSyslogView(ViewNumber view) {
    return view >= FirstSyslogView && view < ConsolidatedView;
}
/// The list within its channel.
constexpr std::size_t ListOfView(ViewNumber view) {
    return static_cast<std::size_t>(view % FirstSyslogView);
}

/// Status bar panels by number.
enum class StatusPanel { NetBiosCount = 1, SyslogCount = 2, ProcessingStatus = 3 };

/// What the rules ask of the main window.  Called from the user-interface thread; nothing here lets events
/// run.
class ServerDisplay {
public:
    virtual ~ServerDisplay() = default;

    /// Whether the user could see the window at all; false while it is hidden to the notification area.
    virtual bool IsVisible() const = 0;
    virtual MessagePage CurrentPage() const = 0;

    virtual void ShowPanel(StatusPanel panel, std::string_view text) = 0;
    virtual void ShowPanelToolTip(StatusPanel panel, std::string_view text) = 0;
    /// A list or tree that holds nothing is disabled, a list also drawn in the colour of a button's face.
    virtual void EnableView(ViewNumber view, bool enabled) = 0;
    /// Lists and tree are hidden while much of them goes.
    virtual void ShowView(ViewNumber view, bool shown) = 0;

    virtual void EnablePollingTimer(bool enabled) = 0;
    virtual void EnableResumeTimer(bool enabled) = 0;
    /// The pause button's picture and tool tip and the menu item's caption.
    virtual void ShowPauseCommand(bool paused) = 0;
};

}  // namespace tallyhorn
