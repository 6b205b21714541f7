#include "ui/HeldKeys.h"

#include <QKeyEvent>

namespace tallyhorn {

bool HeldKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto* const key = static_cast<const QKeyEvent*>(event);
    return key->isAutoRepeat() && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter);
}

}  // namespace tallyhorn
