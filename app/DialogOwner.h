#pragma once

class QWidget;

namespace tallyhorn {

/// Returns the window in front of which a dialog is to open: the open dialog, otherwise the active child
/// window of the main window, otherwise the main window.
QWidget* DialogOwner(QWidget* mainWindow);

}  // namespace tallyhorn
