#include "desktop/forms/linux/ItemHosts.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

namespace tallyhorn {
namespace {

/// The D-Bus name of the watcher's service, which is also the name of its interface.
const QString Watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString WatcherPath = QStringLiteral("/StatusNotifierWatcher");
/// In milliseconds.  If the watcher takes longer for its first answer, no host is assumed to exist.
constexpr int FirstAnswerWithin = 500;

QDBusMessage Question() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        Watcher, WatcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << Watcher << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    return question;
}

/// Returns whether Qt supports status notifier items on this platform.
bool IsDesktopOfItems() {
    const QString platform = QGuiApplication::platformName();
    return platform == QStringLiteral("xcb") || platform.startsWith(QStringLiteral("wayland"));
}

}  // namespace

ItemHosts::ItemHosts() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!IsDesktopOfItems() || !bus.isConnected())
        return;
    auto* const owners =
        new QDBusServiceWatcher(Watcher, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this, &ItemHosts::Ask);
    for (const char* const change : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus.connect(Watcher, WatcherPath, Watcher, QLatin1String(change), this, SLOT(Ask()));
    TakeAnswer(bus.call(Question(), QDBus::Block, FirstAnswerWithin));
}

void ItemHosts::Ask() {
    auto* const answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(Question()), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        TakeAnswer(answer->reply());
        answer->deleteLater();
    });
}

void ItemHosts::TakeAnswer(const QDBusMessage& answer) {
    hasHost_ = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty() &&
               answer.arguments().first().value<QDBusVariant>().variant().toBool();
}

}  // namespace tallyhorn
