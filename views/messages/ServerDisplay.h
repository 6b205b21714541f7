#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "views/messages/Channels.h"

namespace tallyhorn {

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

    virtual void EnableResumeTimer(bool enabled) = 0;
    /// The pause button's picture and tool tip and the menu item's caption.
    virtual void ShowPauseCommand(bool paused) = 0;
    /// The filter button, pressed while a view filter is in force, its tool tip and the menu item's caption.
    /// One that came off leaves another caption than the one at the start.
    virtual void ShowFilterCommand(bool inForce) = 0;
};

}  // namespace tallyhorn
