#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace tallyhorn {

/// Determines whether the desktop currently has a notification area in which Qt's icon can appear.  Only its
/// construction may block, for at most half a second.
///
/// It works around four faults of Qt 6.4 on X11:
/// - At its first icon or first query, Qt chooses between status notifier items (D-Bus) and the X tray, and
///   never changes that choice.  So Qt is not used before this class has found an area.
/// - After its choice, Qt reports an area as available even if only one of the other kind exists.  So this
///   class then considers only the chosen kind.
/// - Qt reports an icon as shown even if its X tray has ended and another one has started.  So a new icon is
///   made for each new X tray.
/// - Qt queries D-Bus without a time limit.  So this class listens to the bus instead.
class AreaPresence {
public:
    virtual ~AreaPresence() = default;
    /// Returns a number that identifies the area, or nothing if there is none of the chosen kind (before the
    /// choice: of any kind).  When the number changes, the icon must be made again.
    virtual std::optional<std::uint32_t> Area() = 0;
    /// Records the kind of area that Qt is about to choose.  To be called directly before an icon is made.
    /// Only the first call has an effect.
    virtual void Decide() = 0;
    /// Returns whether areas of the chosen kind show the icon's menu themselves.  If so, the icon must be
    /// given that menu.
    virtual bool ShowsMenu() const = 0;
    /// Returns whether a single click on the icon, instead of a double click, opens the main window.
    virtual bool OpensAtOnce() const = 0;
};

std::unique_ptr<AreaPresence> MakeAreaPresence();

}  // namespace tallyhorn
