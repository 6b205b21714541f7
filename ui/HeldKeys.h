#pragma once

#include <QObject>

namespace tallyhorn {

/// Drops the repeated presses of a Return key that is held down; otherwise they would answer all message
/// boxes that follow the first one.  To be installed as an event filter of the application.
class HeldKeys final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tallyhorn
