#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyhorn {

/// The pages of the main window's tab control, by index.
enum class MessagePage : std::int16_t { NetBios = 0, Syslog = 1, Consolidated = 2 };
constexpr int MessagePageCount = 3;
/// What the pages' tabs say, "&" before the letter of the access key.
constexpr std::array<std::string_view, MessagePageCount> PageCaptions = {
    "Received Net&BIOS Messages", "Received &Syslog Messages", "Consolidated S&yslog Messages"};

/// The view that the user touched last: a NetBIOS list by its index, a syslog list by its index plus 3, or
/// the consolidated tree.
using ViewNumber = std::int16_t;
constexpr ViewNumber FirstSyslogView = 3;
constexpr ViewNumber ConsolidatedView = 6;

constexpr bool IsSyslogView(ViewNumber view) {
    return view >= FirstSyslogView && view < ConsolidatedView;
}
constexpr MessagePage PageOfView(ViewNumber view) {
    if (view == ConsolidatedView)
        return MessagePage::Consolidated;
    return IsSyslogView(view) ? MessagePage::Syslog : MessagePage::NetBios;
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

    /// Whether the user could see the window at all; false while it is hidden to the notification area or
    /// minimised.
    virtual bool IsVisible() const = 0;
    virtual MessagePage CurrentPage() const = 0;
    /// Of several selected rows of a list the one that the user came to last, else the first; nothing where
    /// none is selected.
    virtual std::optional<std::int32_t> SelectedSlot(ViewNumber list) const = 0;

    virtual void ShowPanel(StatusPanel panel, std::string_view text) = 0;
    virtual void ShowPanelToolTip(StatusPanel panel, std::string_view text) = 0;
    /// A list or tree that holds nothing is disabled, a list also drawn in the colour of a button's face.
    virtual void EnableView(ViewNumber view, bool enabled) = 0;
    /// Lists and tree are hidden while much of them goes.
    virtual void ShowView(ViewNumber view, bool shown) = 0;

    /// The wait cursor from the begin of a long piece of work to its end, and a bar that tells how far it has
    /// come once it lasts over half a second.  LongWork pairs the calls; a piece inside another shows nothing
    /// of its own.
    virtual void BeginWork() = 0;
    virtual void ShowProgress(std::uint64_t done, std::uint64_t total) = 0;
    virtual void EndWork() = 0;

    virtual void EnablePollingTimer(bool enabled) = 0;
    virtual void EnableResumeTimer(bool enabled) = 0;
    /// The pause button's picture and tool tip and the menu item's caption.
    virtual void ShowPauseCommand(bool paused) = 0;
    /// The filter button, pressed while a view filter is in force, its tool tip and the menu item's caption.
    /// One that came off leaves another caption than the one at the start.
    virtual void ShowFilterCommand(bool inForce) = 0;
};

}  // namespace tallyhorn
