#pragma once

#include <QDBusMessage>
#include <QObject>

namespace tallyhorn {

/// Whether a host of status notifier items is at work on the session bus; told by the bus as hosts come and
/// go, so that looking costs nothing.  User-interface thread only.
class ItemHosts final : public QObject {
    Q_OBJECT

public:
    ItemHosts();
    bool HasHost() const { return hasHost_; }

private:
    Q_SLOT void Ask();
    void TakeAnswer(const QDBusMessage& answer);

    bool hasHost_ = false;
};

}  // namespace tallyhorn
