#include "desktop/forms/QtNotificationArea.h"

#include <QApplication>
#include <QMouseEvent>
#include <utility>

#include "forms/AnsiString.h"
#include "forms/Pictures.h"

namespace tallyhorn {

QtNotificationArea::QtNotificationArea() : presence_(MakeAreaPresence()) {}

QtNotificationArea::~QtNotificationArea() = default;

bool QtNotificationArea::IsAvailable() {
    if (!presence_->HasArea())
        return false;
    if (added_)
        MakeIcon();
    return true;
}

void QtNotificationArea::Add(int image, std::string_view tip) {
    added_ = true;
    Show(image, tip);
    if (IsAvailable())
        icon_->show();
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
    connect(icon_.get(), &QSystemTrayIcon::activated, this, &QtNotificationArea::HandleActivation);
    icon_->show();
}

void QtNotificationArea::HandleActivation(QSystemTrayIcon::ActivationReason reason) {
    const auto opens = presence_->OpensAtOnce() ? QSystemTrayIcon::Trigger : QSystemTrayIcon::DoubleClick;
    if (reason == opens)
        return events_.DoubleClick();
    if (reason != QSystemTrayIcon::Context || presence_->ShowsMenu())
        return;
    // Told as the button goes down, and the menu belongs to its way up.
    if (QGuiApplication::mouseButtons().testFlag(Qt::RightButton))
        QCoreApplication::instance()->installEventFilter(this);
    else
        events_.MenuWanted();
}

bool QtNotificationArea::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        QCoreApplication::instance()->removeEventFilter(this);
        // Once the release itself is done with, which might choose the menu's first item.
        QMetaObject::invokeMethod(
            this, [this] { events_.MenuWanted(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace tallyhorn
