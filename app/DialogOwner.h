#pragma once

class QWidget;

namespace tallyhorn {

/// Returns the window in front of which a dialog is to open: the open dialog or the child window of the main
/// window that the user works in, otherwise the main window.
QWidget* DialogOwner(QWidget* mainWindow);

}  // namespace tallyhorn
