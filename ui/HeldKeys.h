#pragma once

#include <QObject>

namespace tallyhorn {

/// Keeps a Return key that is held down from pressing one default button after another: what a question asks
/// next is answered by a key that is pressed anew.  Installed on the application; user-interface thread only.
class HeldKeys final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tallyhorn
