#pragma once

#include <QIcon>
#include <QString>
#include <array>

#include "records/EventTypes.h"

namespace tallyhorn {

/// The commands that have a picture.
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

/// Icons drawn from `ui/icons/NAME.svg` at whatever size is asked for: sharp at every scaling.  Each
/// event type has a shape of its own besides its colour.
QIcon EventIcon(EventType type);
/// All of them by number; whoever paints many keeps them, since what was drawn is kept in the icon.
std::array<QIcon, EventPictureCount> EventIcons();
/// The type's word, for those who do not see the picture.
QString SpokenType(EventType type);
/// A bell, beside an alarm of the tree.
QIcon AlarmIcon();
QIcon CommandIcon(CommandPicture picture);
/// The program's own icon.
QIcon ConsoleIcon();
/// The notification area's icon: 0 as it is, 1 and 2 while it flashes.  None where there is no such number.
QIcon TrayPicture(int image);
/// A horn that sounds, for a dark ground.
QIcon StartupPicture();

}  // namespace tallyhorn
