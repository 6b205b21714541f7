#include "desktop/help/forms/HelpKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <utility>

namespace tallyhorn {
namespace {

/// Returns the help page of the widget or of its nearest ancestor with one, or 0 if none of them has one.
unsigned ContextOf(const QWidget* widget) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        if (const unsigned context = widget->property(HelpContextProperty).toUInt(); context != 0)
            return context;
    }
    return 0;
}

}  // namespace

HelpKeys::HelpKeys(Handler show) : show_(std::move(show)) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool HelpKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto* const key = static_cast<const QKeyEvent*>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return false;
    const unsigned context = ContextOf(static_cast<const QWidget*>(watched));
    if (context == 0)
        return false;
    // Closes open menus: a menu grabs mouse and keyboard, so that the help could not be used.
    while (QWidget* const popup = QApplication::activePopupWidget())
        popup->close();
    if (!key->isAutoRepeat())
        show_(static_cast<HelpContext>(context));
    return true;
}

}  // namespace tallyhorn
