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

// Icons drawn from `ui/icons/NAME.svg`, sharp at every size.

/// Returns the icon of an event type.  The types differ in shape, not only in colour.
QIcon EventIcon(EventType type);
/// Returns the icons of all event types.  An icon caches what it has drawn, so a caller that paints often
/// should keep the array.
std::array<QIcon, EventPictureCount> EventIcons();
/// Returns the name of the event type for screen readers.
QString SpokenType(EventType type);
/// Returns the bell for the alarms in the tree.
QIcon AlarmIcon();
QIcon CommandIcon(CommandPicture picture);
/// Returns the icon of the program and its windows.
QIcon ConsoleIcon();
/// Returns the notification area's icon: 0 normal, 1 and 2 for flashing.  Other numbers give an empty icon.
QIcon TrayPicture(int image);
/// Returns the horn of the splash, for a dark background.
QIcon StartupPicture();

}  // namespace tallyhorn
