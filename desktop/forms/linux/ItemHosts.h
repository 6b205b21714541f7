#pragma once

#include <QDBusMessage>
#include <QObject>

namespace tallyhorn {

/// Keeps track of whether a host of status notifier items runs on the session bus.  The bus reports when
/// hosts start and end, so HasHost sends no query.
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
