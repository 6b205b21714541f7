#pragma once

#include "views/messages/Channels.h"

class QWidget;

namespace tallyhorn {

/// What the main window calls when it is to close.
class ServerLifetime {
public:
    virtual ~ServerLifetime() = default;
    /// Closes the console without a question, as at the end of the user's session.
    virtual void End() = 0;
    /// Returns whether the window may close; asks the user first if `byUser`.
    virtual bool QueryUnload(bool byUser) = 0;
    /// Shuts the console down and hides the window, which is still visible when this is called.
    virtual void Unload() = 0;
};

/// The commands that the main window does not run itself.  A command that opens a dialog returns when the
/// dialog has closed.
class ServerCommands {
public:
    virtual ~ServerCommands() = default;
    virtual void ToggleViewFilter() = 0;
    virtual void ManageSuppressionFilters() = 0;
    /// Opens the dialog for a suppression filter made from the current alarm, in front of `over`.
    virtual void AddSuppressionFilter(QWidget& over) = 0;
    virtual void OpenEventViewer(ViewNumber view, MessagePage page) = 0;
    virtual void ExportMessages(MessagePage page) = 0;
    virtual void ShowPreferences() = 0;
    virtual void ShowHelp() = 0;
    virtual void ShowAbout() = 0;
};

}  // namespace tallyhorn
