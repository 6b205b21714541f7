#pragma once

#include <QWidget>
#include <array>

#include "desktop/NotificationIcon.h"
#include "desktop/forms/TrayHost.h"

class QAction;
class QMenu;
class QTimer;

namespace tallyhorn {

/// Owns the timers and the menu of the notification-area icon.  It is a window that is never shown.  Ensures
/// that the user can always bring back a hidden main window.
class frmTrayIcon final : public QWidget {
    Q_OBJECT

public:
    enum MenuItem { DisplayMessages, Sound, FirstLine, About, Help, SecondLine, Exit, MenuItemCount };

    frmTrayIcon(NotificationArea& area, TrayHost& host);
    ~frmTrayIcon() override { area_.Listen({}); }

    void Initialize();
    void Shutdown();
    void ShowServerWindowMax() { host_.ShowMainWindow(true); }
    void ShowServerWindow() { host_.ShowMainWindow(false); }
    void StartFlash() { icon_.StartFlash(); }
    void StopFlash() { icon_.StopFlash(); }
    /// Removes the icon permanently.  After that, its menu and clicks have no effect.
    void Unload();

    /// To be called when the main window has been minimised.  Adds the icon.  Returns true if a notification
    /// area shows it; only then may the main window be hidden.
    bool MainWindowMinimized();
    /// To be called when the main window is visible again.  Removes the icon.
    void MainWindowRestored();
    /// Sets or removes the check mark of the menu item "&Sound".
    void ShowSound(bool on);

    QMenu& PopUpMenu() { return *mnuPopUp; }

private:
    void BuildMenu();
    void MnuPopClick(int index);
    void DisplayMainWindow();
    void AskFor(void (TrayHost::*command)());
    void Watch();

    NotificationArea& area_;
    TrayHost& host_;
    NotificationIcon icon_;
    int missed_ = 0;  ///< consecutive checks that found no area
    bool unloaded_ = false;

    QTimer* timFlash;
    QTimer* timWatch;
    QMenu* mnuPopUp;
    std::array<QAction*, MenuItemCount> mnuPop{};
};

}  // namespace tallyhorn
