#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace tallyhorn {

/// Finds out whether the desktop has a notification area now in which Qt's icon can appear.  Only its
/// construction may block, for at most half a second.
///
/// It works around four faults of Qt 6.4 on X11:
/// - At its first icon or first query, Qt chooses between status notifier items (D-Bus) and the X tray, and
///   never changes that choice.  So Qt is not used before an area has been found here.
/// - Qt reports an area as available although only one of the other kind is left.  So after the choice, only
///   the chosen kind counts here.
/// - Qt reports an icon as shown even if its tray has ended and a new one has started.  So a new icon is made
///   for each owner of the X tray.
/// - Qt queries D-Bus without a time limit.  So this class listens to the bus instead.
class AreaPresence {
public:
    virtual ~AreaPresence() = default;
    /// Returns nothing if there is no area of the chosen kind, or of any kind before the choice.  Otherwise
    /// returns a number; when it changes, the icon must be made again.
    virtual std::optional<std::uint32_t> Area() = 0;
    /// Records the kind that Qt is about to choose.  To be called directly before an icon is made; only the
    /// first call has an effect.
    virtual void Decide() = 0;
    /// Returns whether areas of this kind show the icon's menu themselves, so that the icon must be given it.
    virtual bool ShowsMenu() const = 0;
    /// Returns whether a single click on the icon, instead of a double click, opens the program.
    virtual bool OpensAtOnce() const = 0;
};

std::unique_ptr<AreaPresence> MakeAreaPresence();

}  // namespace tallyhorn
