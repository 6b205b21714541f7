#include "desktop/forms/QtNotificationArea.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>
#include <utility>

#include "ui/AnsiString.h"
#include "ui/Pictures.h"

namespace tallyhorn {

QtNotificationArea::QtNotificationArea() : presence_(MakeAreaPresence()) {
    // The connection is queued, so that the menu opens after the release of the button has been handled;
    // otherwise the release could choose the first item of the menu.
    connect(
        this, &QtNotificationArea::RightButtonReleased, this, [this] { events_.MenuWanted(); },
        Qt::QueuedConnection);
}

QtNotificationArea::~QtNotificationArea() = default;

bool QtNotificationArea::IsAvailable() {
    const std::optional<std::uint32_t> area = presence_->Area();
    // Qt would not show the old icon in a new area, so a new icon is made below.
    if (area != area_)
        icon_.reset();
    area_ = area;
    if (area_ && added_)
        MakeIcon();
    return area_.has_value();
}

void QtNotificationArea::Add(int image, std::string_view tip) {
    added_ = true;
    Show(image, tip);
    if (IsAvailable())
        ShowIcon();
}

void QtNotificationArea::Modify(int image, std::string_view tip) {
    if (added_)
        Show(image, tip);
}

void QtNotificationArea::Delete() {
    added_ = false;
    if (icon_ != nullptr)
        icon_->hide();
}

void QtNotificationArea::Show(int image, std::string_view tip) {
    picture_ = TrayPicture(image);
    tip_ = ToQString(tip);
    if (icon_ == nullptr)
        return;
    icon_->setIcon(picture_);
    icon_->setToolTip(tip_);
}

/// Makes the icon unless it exists.  Must not be called while there is no area, because Qt would then assume
/// for the rest of the process that none exists.
void QtNotificationArea::MakeIcon() {
    if (icon_ != nullptr)
        return;
    presence_->Decide();
    icon_ = std::make_unique<QSystemTrayIcon>(picture_);
    icon_->setToolTip(tip_);
    if (presence_->ShowsMenu())
        icon_->setContextMenu(menu_);
    // The connection is queued, because the handler may delete the icon.
    connect(icon_.get(), &QSystemTrayIcon::activated, this, &QtNotificationArea::HandleActivation,
            Qt::QueuedConnection);
    ShowIcon();
}

void QtNotificationArea::ShowIcon() {
    icon_->show();
    for (QWindow* const window : QGuiApplication::allWindows()) {
        if (window->objectName() != QStringLiteral("QSystemTrayIconSysWindow"))
            continue;
        window->installEventFilter(this);
        window_ = window;
        KeepOpen(*window);
    }
}

/// A modal dialog blocks all windows of the process that are not its children.  In the X tray, the icon is
/// such a window.  If it were blocked, the user could not bring back a main window that was minimised
/// together with its dialog.  So the icon's window is made a child of the dialog.
void QtNotificationArea::KeepOpen(QWindow& iconWindow) {
    if (QWindow* const dialog = QGuiApplication::modalWindow())
        iconWindow.setTransientParent(dialog);
}

void QtNotificationArea::HandleActivation(QSystemTrayIcon::ActivationReason reason) {
    const auto opens = presence_->OpensAtOnce() ? QSystemTrayIcon::Trigger : QSystemTrayIcon::DoubleClick;
    if (reason == opens)
        return events_.DoubleClick();
    if (reason != QSystemTrayIcon::Context || presence_->ShowsMenu())
        return;
    // Qt reports the press of the button, but the menu is to open at its release, which eventFilter receives
    // if the icon's window is known.
    pressed_ = window_ != nullptr && QGuiApplication::mouseButtons().testFlag(Qt::RightButton);
    if (!pressed_)
        events_.MenuWanted();
}

bool QtNotificationArea::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) {
        if (auto* const window = qobject_cast<QWindow*>(watched))
            KeepOpen(*window);
    } else if (event->type() == QEvent::MouseButtonRelease &&
               static_cast<QMouseEvent*>(event)->button() == Qt::RightButton &&
               std::exchange(pressed_, false)) {
        emit RightButtonReleased();
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace tallyhorn
