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

/// The notification area through Qt's icon, which it makes as soon as there is an area to put it in.
/// User-interface thread only.
class QtNotificationArea final : public QObject, public NotificationArea {
    Q_OBJECT

public:
    QtNotificationArea();
    ~QtNotificationArea() override;

    /// The menu that belongs to the icon, for areas that show it by themselves; set before the icon is added.
    void SetMenu(QMenu& menu) { menu_ = &menu; }

    void Listen(Events events) override { events_ = std::move(events); }
    bool IsAvailable() override;
    void Add(int image, std::string_view tip) override;
    void Modify(int image, std::string_view tip) override;
    void Delete() override;

signals:
    /// After it went down over the icon.
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
    std::optional<std::uint32_t> area_;  ///< the one that the icon was made in
    QPointer<QWindow> window_;           ///< the icon's, where it is one of this program's
    bool added_ = false;
    bool pressed_ = false;  ///< the right button, over the icon, and not yet let go
};

}  // namespace tallyhorn
