#pragma once

#include <QIcon>
#include <QString>
#include <array>

#include "records/EventTypes.h"

namespace tallyhorn {

/// The commands that have an icon.
enum class CommandPicture {
    Delete,
    Clear,
    Pause,
    Resume,
    View,
    Filter,
    Suppress,
    EventViewer,
    Export,
    Configure,
    Help,
    Up,
    Down,
    Copy
};
constexpr std::size_t CommandPictureCount = 14;

// These functions return icons that are drawn from `ui/icons/NAME.svg` and are sharp at every size.

/// Returns the icon of an event type.  The types differ in shape, not only in colour.
QIcon EventIcon(EventType type);
/// Returns the icons of all event types.  An icon caches its drawn pictures, so a caller that paints often
/// should keep the array.
std::array<QIcon, EventPictureCount> EventIcons();
/// Returns the name of the event type for screen readers.
QString SpokenType(EventType type);
/// Returns the icon for the alarms in the tree, a bell.
QIcon AlarmIcon();
QIcon CommandIcon(CommandPicture picture);
/// Returns the icon of the program and its windows.
QIcon ConsoleIcon();
/// Returns the icon for the notification area: the normal one for 0, the two flashing ones for 1 and 2, and
/// an empty icon for any other number.
QIcon TrayPicture(int image);
/// Returns the picture of a horn for the splash, which has a dark background.
QIcon StartupPicture();

}  // namespace tallyhorn
