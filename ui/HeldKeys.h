#pragma once

#include <QObject>

namespace tallyhorn {

/// Drops the repeated presses of a Return key that is held down.  Otherwise it would answer each message box
/// that follows the first one.  To be installed as event filter of the application.
class HeldKeys final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tallyhorn
