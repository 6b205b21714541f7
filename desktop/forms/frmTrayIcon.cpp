#include "desktop/forms/frmTrayIcon.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QTimer>

#include "desktop/help/HelpContexts.h"

namespace tallyhorn {
namespace {

constexpr int FlashInterval = 500;   ///< in milliseconds
constexpr int WatchInterval = 1000;  ///< in milliseconds
/// The number of consecutive checks without an area after which the main window is shown.  One such check may
/// only mean that the desktop panel is restarting, which takes less than a second.
constexpr int MissesUntilGone = 2;

/// The captions of the menu items.  A null pointer stands for a separator.
constexpr std::array<const char*, frmTrayIcon::MenuItemCount> Captions = {
    "&Display Messages",
    "&Sound",
    nullptr,
    "&About the Tallyhorn Listener Console",
    "&Help",
    nullptr,
    "E&xit"};

QTimer* MakeTimer(QWidget* owner, const char* name, int interval) {
    auto* const timer = new QTimer(owner);
    timer->setObjectName(QLatin1String(name));
    timer->setInterval(interval);
    return timer;
}

}  // namespace

frmTrayIcon::frmTrayIcon(NotificationArea& area, TrayHost& host)
    : area_(area),
      host_(host),
      icon_(area, [this](bool enabled) { enabled ? timFlash->start() : timFlash->stop(); }),
      timFlash(MakeTimer(this, "timFlash", FlashInterval)),
      timWatch(MakeTimer(this, "timWatch", WatchInterval)),
      mnuPopUp(new QMenu(QStringLiteral("PopUp"), this)) {
    setObjectName(QStringLiteral("frmTrayIcon"));
    BuildMenu();
    connect(timFlash, &QTimer::timeout, this, [this] { icon_.TimFlashTick(); });
    connect(timWatch, &QTimer::timeout, this, &frmTrayIcon::Watch);
    area_.Listen({.DoubleClick = [this] { MnuPopClick(DisplayMessages); },
                  .MenuWanted = [this] { mnuPopUp->popup(QCursor::pos()); }});
}

void frmTrayIcon::BuildMenu() {
    mnuPopUp->setObjectName(QStringLiteral("mnuPopUp"));
    mnuPopUp->setProperty(HelpContextProperty, HelpNumber(HelpContext::NotificationArea));
    for (std::size_t i = 0; i < mnuPop.size(); ++i) {
        const char* const caption = Captions.at(i);
        QAction* const item =
            caption == nullptr ? mnuPopUp->addSeparator() : mnuPopUp->addAction(QLatin1String(caption));
        item->setObjectName(QStringLiteral("mnuPop%1").arg(i));
        connect(item, &QAction::triggered, this, [this, i] { MnuPopClick(static_cast<int>(i)); });
        mnuPop.at(i) = item;
    }
    mnuPop.at(Sound)->setCheckable(true);
}

void frmTrayIcon::Initialize() {
    icon_.Initialize();
    missed_ = 0;
    timWatch->start();
}

void frmTrayIcon::Shutdown() {
    icon_.Shutdown();
    timWatch->stop();
}

void frmTrayIcon::Unload() {
    unloaded_ = true;
    StopFlash();
    Shutdown();
}

void frmTrayIcon::ShowSound(bool on) {
    mnuPop.at(Sound)->setChecked(on);
}

void frmTrayIcon::MnuPopClick(int index) {
    if (unloaded_)
        return;
    switch (index) {
        case DisplayMessages:
            return DisplayMainWindow();
        case Sound:
            return host_.ToggleSound();
        case About:
            return AskFor(&TrayHost::AskForAbout);
        case Help:
            return AskFor(&TrayHost::AskForHelp);
        case Exit:
            return host_.Leave();
        default:
            return;
    }
}

void frmTrayIcon::DisplayMainWindow() {
    ShowServerWindow();
    host_.LetEventsRun();
    MainWindowRestored();
}

/// Brings an open dialog to the front before it passes the command on: the help opens beside that dialog, and
/// the about box does not open at all while a dialog is open.
void frmTrayIcon::AskFor(void (TrayHost::*command)()) {
    if (QApplication::activeModalWidget() != nullptr)
        DisplayMainWindow();
    (host_.*command)();
}

bool frmTrayIcon::MainWindowMinimized() {
    if (unloaded_)
        return false;
    Initialize();
    return area_.IsAvailable();
}

void frmTrayIcon::MainWindowRestored() {
    StopFlash();
    Shutdown();
}

/// Called once a second: checks whether there is an area.  The checks end when there is one and the main
/// window is visible, because the icon is then shown, and the user does not need it to reach the window.
void frmTrayIcon::Watch() {
    const bool hidden = host_.IsMainWindowHidden();
    if (area_.IsAvailable()) {
        missed_ = 0;
        if (!hidden)
            timWatch->stop();
    } else if (++missed_ >= MissesUntilGone && hidden) {
        host_.UncoverMainWindow();
        MainWindowRestored();
    }
}

}  // namespace tallyhorn
