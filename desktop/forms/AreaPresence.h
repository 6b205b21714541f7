#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace tallyhorn {

/// Looks whether the desktop has a notification area that Qt's icon can appear in, now.
/// User-interface thread only; never blocks but for half a second at its making.
///
/// It exists for what Qt 6.4 does on X11.  Qt decides once in a program's life between status notifier items
/// (D-Bus) and the X tray, with its first icon or question; says that an area is there where one of the other
/// sort came in its place; holds an icon for shown whose tray died and came again; and asks D-Bus without a
/// limit of time.  So Qt is asked nothing before an area was found here, afterwards only the sort that it
/// decided on counts, an icon is made anew for each owner of the X tray, and the bus is listened to instead.
class AreaPresence {
public:
    virtual ~AreaPresence() = default;
    /// The area of the sort that was decided on, of any sort until then: another number for each one in which
    /// an icon has to be made anew, nothing where there is none.
    virtual std::optional<std::uint32_t> Area() = 0;
    /// Qt decides once in a program's life, with its first icon, on the best sort of area that it finds then,
    /// and stays with it: to be called as that icon is made.
    virtual void Decide() = 0;
    /// Whether the area of that sort shows the icon's menu, which it has to be given.
    virtual bool ShowsMenu() const = 0;
    /// Whether a single press of the area's own choice is what opens the program.
    virtual bool OpensAtOnce() const = 0;
};

std::unique_ptr<AreaPresence> MakeAreaPresence();

}  // namespace tallyhorn
