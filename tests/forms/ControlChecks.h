#pragma once

#include <string>

class QWidget;

namespace tallyhorn {

/// Checks what holds for every window: whatever has a caption or takes the focus is named, for us and for
/// screen readers; a button without text has a picture and a tip; the Tab key goes round through all of it as
/// the eye does; no two captions share an access key but those in `sharedKeys` (capitals in alphabetical
/// order).  The window has to be active.
void ExpectSoundControls(QWidget& window, const std::string& sharedKeys = "");

}  // namespace tallyhorn
