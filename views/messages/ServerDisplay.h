#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "views/messages/Channels.h"

namespace tallyhorn {

/// The notices at the right end of the status bar, most urgent first.  NotProtected: a crash would lose
/// messages; shown until that changes.  DamagedBackup: some saved messages could not be read; shown until the
/// user has looked at the notice.
enum class Notice { NotProtected, DamagedBackup };
constexpr std::size_t NoticeCount = 2;

/// The port to the main window.  No function runs pending events.
class ServerDisplay {
public:
    virtual ~ServerDisplay() = default;

    /// Returns false while the window is minimised or hidden to the notification area.
    virtual bool IsVisible() const = 0;
    virtual MessagePage CurrentPage() const = 0;
    /// Returns whether the preferences show the page, in front or not.
    virtual bool HasPage(MessagePage page) const = 0;
    /// Returns the slot of the list's current row if that is selected, otherwise of the first selected row,
    /// or nothing if no row is selected.
    virtual std::optional<std::int32_t> SelectedSlot(ViewNumber list) const = 0;

    /// Shows the page of the view, if the preferences show that page.
    virtual void BringToFront(ViewNumber view) = 0;
    /// Draws the selection of `view` as the active one, and those of the other views pale or, if `alone`, not
    /// at all.
    virtual void ShowActiveView(ViewNumber view, bool alone) = 0;

    virtual void ShowPanel(StatusPanel panel, std::string_view text) = 0;
    virtual void ShowPanelToolTip(StatusPanel panel, std::string_view text) = 0;
    /// Shows the notice, or removes it if `details` is empty.  The details explain it to the user.
    virtual void ShowNotice(Notice notice, std::string_view details) = 0;
    /// Enables or disables a list or the tree; a disabled list has the colour of a button's face.
    virtual void EnableView(ViewNumber view, bool enabled) = 0;
    /// Shows a list or the tree, or hides it while much of it is removed.
    virtual void ShowView(ViewNumber view, bool shown) = 0;

    /// Show the wait cursor during long work and, after half a second, a progress bar.  LongWork calls
    /// BeginWork and EndWork in pairs. Work inside other work shows nothing.
    virtual void BeginWork() = 0;
    virtual void ShowProgress(std::uint64_t done, std::uint64_t total) = 0;
    virtual void EndWork() = 0;

    virtual void EnableResumeTimer(bool enabled) = 0;
    /// Sets the pause button's picture and tool tip and the menu item's caption.
    virtual void ShowPauseCommand(bool paused) = 0;
    /// Sets whether the filter button is pressed, its tool tip and the menu item's caption.  After a filter
    /// was removed, the caption differs from that at the start; see CommandBars::ShowFilter.
    virtual void ShowFilterCommand(bool inForce) = 0;
};

}  // namespace tallyhorn
