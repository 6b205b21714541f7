#pragma once

#include <QString>
#include <functional>

class QAction;
class QMainWindow;
class QToolBar;

namespace tallyhorn {

/// What the user can have done by menu and tool bar.
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

/// The main window's menu bar and tool bar, and what the two commands with two faces show.  User-interface
/// thread only; the window owns what is made here.
class CommandBars {
public:
    using Handler = std::function<void(ServerCommand)>;

    /// `handle` is called for each command that the user gives, as long as the window lives.
    CommandBars(QMainWindow& window, Handler handle);

    QToolBar* ToolBar() const { return tbrMain; }
    void ShowPause(bool paused);
    /// In force the button is pressed and both offer to remove the filter.  After that the menu item offers
    /// to apply one to "Alarms", where it spoke of "Messages" at the start.
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
