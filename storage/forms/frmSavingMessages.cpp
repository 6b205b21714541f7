#include "storage/forms/frmSavingMessages.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tallyhorn {

frmSavingMessages::frmSavingMessages(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setObjectName(QStringLiteral("frmSavingMessages"));
    setWindowTitle(QStringLiteral("Saving Messages ... Please Wait"));
    auto* const lblWait = new QLabel(
        QStringLiteral("The Tallyhorn Listener Console is saving received messages to disk.  Please wait..."),
        this);
    lblWait->setObjectName(QStringLiteral("lblWait"));
    lblWait->setTextFormat(Qt::PlainText);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->addWidget(lblWait);
}

}  // namespace tallyhorn
