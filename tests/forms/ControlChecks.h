#pragma once

#include <string>

class QWidget;

namespace tallyhorn {

/// Checks the rules for every window, which must be active: each control that has a caption or can have the
/// focus has an object name and an accessible name; a button without text has an icon and a tool tip; the Tab
/// key visits all controls in reading order; no two captions share an access key except those in `sharedKeys`
/// (upper case, in alphabetical order).
void ExpectSoundControls(QWidget& window, const std::string& sharedKeys = "");

}  // namespace tallyhorn
