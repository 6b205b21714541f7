#include "app/QtMessageBoxes.h"

#include <QMessageBox>

#include "app/DialogOwner.h"
#include "desktop/help/HelpContexts.h"
#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

int Show(QWidget* mainWindow, QMessageBox::Icon icon, std::string_view text,
         QMessageBox::StandardButtons buttons,
         QMessageBox::StandardButton defaultButton = QMessageBox::NoButton) {
    QMessageBox box(icon, QStringLiteral("Tallyhorn Listener Console"), ToQString(text), buttons,
                    DialogOwner(mainWindow));
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(defaultButton);
    box.setProperty(HelpContextProperty, HelpNumber(HelpContext::Troubles));
    return box.exec();
}

}  // namespace

void QtMessageBoxes::Inform(std::string_view text) {
    Show(owner_, QMessageBox::NoIcon, text, QMessageBox::Ok);
}

void QtMessageBoxes::Warn(std::string_view text) {
    Show(owner_, QMessageBox::Warning, text, QMessageBox::Ok);
}

bool QtMessageBoxes::Confirm(std::string_view text) {
    return Show(owner_, QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) ==
           QMessageBox::Yes;
}

bool QtMessageBoxes::ConfirmErasing(std::string_view text) {
    return Show(owner_, QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
           QMessageBox::Yes;
}

bool QtMessageBoxes::Retry(std::string_view text) {
    return Show(owner_, QMessageBox::Warning, text, QMessageBox::Retry | QMessageBox::Cancel) ==
           QMessageBox::Retry;
}

}  // namespace tallyhorn
