#include "app/DialogOwner.h"

#include <QApplication>
#include <QWidget>

namespace tallyhorn {

QWidget* DialogOwner(QWidget* mainWindow) {
    if (QWidget* const dialog = QApplication::activeModalWidget())
        return dialog;
    QWidget* const active = QApplication::activeWindow();
    const bool besideMain =
        active != nullptr && mainWindow != nullptr && active->parentWidget() == mainWindow;
    return besideMain ? active : mainWindow;
}

}  // namespace tallyhorn
