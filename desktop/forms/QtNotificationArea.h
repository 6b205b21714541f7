#pragma once

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QWindow>
#include <memory>

#include "desktop/forms/AreaPresence.h"
#include "platform/NotificationArea.h"

namespace tallyhorn {

/// Implements the notification area with QSystemTrayIcon.  Makes the icon as soon as an area exists.
class QtNotificationArea final : public QObject, public NotificationArea {
    Q_OBJECT

public:
    QtNotificationArea();
    ~QtNotificationArea() override;

    /// Sets the menu of the icon, for areas that show this menu themselves.  To be called before `Add`.
    void SetMenu(QMenu& menu) { menu_ = &menu; }

    void Listen(Events events) override { events_ = std::move(events); }
    bool IsAvailable() override;
    void Add(int image, std::string_view tip) override;
    void Modify(int image, std::string_view tip) override;
    void Delete() override;

signals:
    /// Emitted when the right button, pressed over the icon, has been released.
    void RightButtonReleased();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MakeIcon();
    void ShowIcon();
    static void KeepOpen(QWindow& iconWindow);
    void Show(int image, std::string_view tip);
    void HandleActivation(QSystemTrayIcon::ActivationReason reason);

    const std::unique_ptr<AreaPresence> presence_;
    Events events_;
    QPointer<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    QIcon picture_;
    QString tip_;
    std::optional<std::uint32_t> area_;  ///< the area for which the icon was made
    QPointer<QWindow> window_;           ///< the icon's window, if it belongs to this process
    bool added_ = false;
    bool pressed_ = false;  ///< whether the right button was pressed on the icon and is still down
};

}  // namespace tallyhorn
