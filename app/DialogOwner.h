#pragma once

class QWidget;

namespace tallyhorn {

/// The window that a dialog opens in front of, so that it never hides behind it: the dialog or the main
/// window's other window that the user works in, else the main window.  User-interface thread only.
QWidget* DialogOwner(QWidget* mainWindow);

}  // namespace tallyhorn
