#include "desktop/forms/QtNotificationArea.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>
#include <utility>

#include "ui/AnsiString.h"
#include "ui/Pictures.h"

namespace tallyhorn {

QtNotificationArea::QtNotificationArea() : presence_(MakeAreaPresence()) {
    // Once the release itself is done with, which might choose the menu's first item.
    connect(
        this, &QtNotificationArea::RightButtonReleased, this, [this] { events_.MenuWanted(); },
        Qt::QueuedConnection);
}

QtNotificationArea::~QtNotificationArea() = default;

bool QtNotificationArea::IsAvailable() {
    const std::optional<std::uint32_t> area = presence_->Area();
    // An icon does not outlive its area: in the next one Qt would still hold it for shown.
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

/// Not before there is an area: Qt would decide on none for good.
void QtNotificationArea::MakeIcon() {
    if (icon_ != nullptr)
        return;
    presence_->Decide();
    icon_ = std::make_unique<QSystemTrayIcon>(picture_);
    icon_->setToolTip(tip_);
    if (presence_->ShowsMenu())
        icon_->setContextMenu(menu_);
    // Not from within the icon, which may go with its area by what follows.
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

/// Where the icon is a window of this program's, Qt shuts it off while a dialog stands open, and with it the
/// way back to a window that was minimised with its dialog.  What belongs to the dialog stays open.
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
    // Told as the button goes down, and the menu belongs to its way up, which the same window hears of.
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
