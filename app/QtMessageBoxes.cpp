#include "app/QtMessageBoxes.h"

#include <QApplication>
#include <QMessageBox>

#include "desktop/HelpContexts.h"
#include "forms/AnsiString.h"

namespace tallyhorn {
namespace {

/// In front of the dialog or of the main window's other window that the user works in, so that it never hides
/// behind it.
int Show(QWidget* mainWindow, QMessageBox::Icon icon, std::string_view text,
         QMessageBox::StandardButtons buttons) {
    QWidget* const dialog = QApplication::activeModalWidget();
    QWidget* const active = QApplication::activeWindow();
    const bool besideMain =
        active != nullptr && mainWindow != nullptr && active->parentWidget() == mainWindow;
    QWidget* const owner = dialog != nullptr ? dialog : besideMain ? active : mainWindow;
    QMessageBox box(icon, QStringLiteral("Tallyhorn Listener Console"), ToQString(text), buttons, owner);
    box.setTextFormat(Qt::PlainText);
    box.setProperty(HelpContextProperty, HelpNumber(HelpContext::Troubles));
    return box.exec();
}

}  // namespace

void QtMessageBoxes::Tell(std::string_view text) {
    Show(owner_, QMessageBox::NoIcon, text, QMessageBox::Ok);
}

void QtMessageBoxes::Warn(std::string_view text) {
    Show(owner_, QMessageBox::Warning, text, QMessageBox::Ok);
}

bool QtMessageBoxes::Confirm(std::string_view text) {
    return Show(owner_, QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

bool QtMessageBoxes::Retry(std::string_view text) {
    return Show(owner_, QMessageBox::Warning, text, QMessageBox::Retry | QMessageBox::Cancel) ==
           QMessageBox::Retry;
}

}  // namespace tallyhorn
