#pragma once

#include "views/messages/Channels.h"

class QWidget;

namespace tallyhorn {

/// What the main window asks and tells when it is to go or to come back.
class ServerLifetime {
public:
    virtual ~ServerLifetime() = default;
    /// Whether the window may close; `byUser` where the user closed it, who is then asked.
    virtual bool QueryUnload(bool byUser) = 0;
    /// The window has closed.
    virtual void Unload() = 0;
    /// The window has been minimised, by whatever way; true where it is to be hidden, since something else
    /// will bring it back.
    virtual bool Minimized() = 0;
    /// The user has brought the minimised window back by himself.
    virtual void Restored() = 0;
};

/// The commands that lead out of the main window; a dialog has closed again when its command returns.
class ServerCommands {
public:
    virtual ~ServerCommands() = default;
    virtual void ToggleViewFilter() = 0;
    virtual void ManageSuppressionFilters() = 0;
    /// Asks for a suppression filter made from the current alarm, over the detail window.
    virtual void AddSuppressionFilter(QWidget& over) = 0;
    virtual void OpenEventViewer(ViewNumber view) = 0;
    virtual void ExportMessages() = 0;
    virtual void ShowPreferences() = 0;
    virtual void ShowHelp() = 0;
    virtual void ShowAbout() = 0;
};

}  // namespace tallyhorn
