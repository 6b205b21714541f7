#include "app/QtMessageBoxes.h"

#include <QEvent>
#include <QMessageBox>

#include "app/DialogOwner.h"
#include "desktop/help/HelpContexts.h"
#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

/// Keeps a message box in the middle of its owner.  At the start, the box may open before the window system
/// has maximised the main window.
class Centring final : public QObject {
public:
    explicit Centring(QMessageBox& box) : box_(box) {
        if (box.parentWidget() != nullptr)
            box.parentWidget()->window()->installEventFilter(this);
    }

    bool eventFilter(QObject* owner, QEvent* event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
            const QRect place = static_cast<QWidget*>(owner)->frameGeometry();
            QRect box = box_.frameGeometry();
            box.moveCenter(place.center());
            box_.move(box.topLeft());
        }
        return false;
    }

private:
    QMessageBox& box_;
};

int Show(QWidget* mainWindow, QMessageBox::Icon icon, std::string_view text,
         QMessageBox::StandardButtons buttons,
         QMessageBox::StandardButton defaultButton = QMessageBox::NoButton) {
    QMessageBox box(icon, QStringLiteral("Tallyhorn Listener Console"), ToQString(text), buttons,
                    DialogOwner(mainWindow));
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(defaultButton);
    box.setProperty(HelpContextProperty, HelpNumber(HelpContext::Troubles));
    const Centring centring(box);
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
