#pragma once

#include <QWidget>
#include <array>

#include "desktop/NotificationIcon.h"
#include "desktop/forms/TrayHost.h"

class QAction;
class QMenu;
class QTimer;

namespace tallyhorn {

/// The window behind the notification-area icon, itself never shown: its timers and its menu.  It sees to it
/// that a hidden main window can always be reached.  User-interface thread only.
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
    /// The icon goes, and nothing here acts any more.
    void Unload();

    /// The main window has been minimised; true where it is to be hidden, since the icon stands for it now.
    bool MainWindowMinimized();
    /// The user has it before him again, by whatever way.
    void MainWindowRestored();
    /// The check mark beside "&Sound".
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
    int missed_ = 0;  ///< looks in a row that found no area
    bool unloaded_ = false;

    QTimer* timFlash;
    QTimer* timWatch;
    QMenu* mnuPopUp;
    std::array<QAction*, MenuItemCount> mnuPop{};
};

}  // namespace tallyhorn
