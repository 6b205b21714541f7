#pragma once

#include <QString>
#include <functional>

class QAction;
class QMainWindow;
class QToolBar;

namespace tallyhorn {

/// The commands of menu and tool bar.
enum class ServerCommand {
    ViewMessage,
    DeleteMessages,
    ClearAll,
    Exit,
    ToggleFilter,
    ManageFilters,
    Pause,
    EventLog,
    Export,
    Preferences,
    Help,
    About
};

/// Builds the main window's menu bar and tool bar, whose controls the window owns, and changes the captions
/// of the two commands that toggle something.
class CommandBars {
public:
    using Handler = std::function<void(ServerCommand)>;

    /// Calls `handle` for each command that the user gives.  The window must outlive this object.
    CommandBars(QMainWindow& window, Handler handle);

    QToolBar* ToolBar() const { return tbrMain; }
    void ShowPause(bool paused);
    /// While a filter is in force, shows the button pressed, and "Remove Filter" on button and menu item.
    /// compatibility: the menu item is "Apply a Filter to Received Messages" until the first call, and
    /// "Apply a Filter to Received Alarms" whenever a filter has been removed.
    void ShowFilter(bool inForce);

private:
    void BuildMenus();
    void BuildToolBar();
    QAction* AddAction(const QString& name, const QString& caption, ServerCommand command);

    QMainWindow& window_;
    const Handler handle_;
    bool filterInForce_ = false;
    QToolBar* tbrMain = nullptr;
    QAction* mnuEdit_Filter = nullptr;
    QAction* mnuEditPause = nullptr;
    QAction* tbrFilter = nullptr;
    QAction* tbrPause = nullptr;
};

}  // namespace tallyhorn
