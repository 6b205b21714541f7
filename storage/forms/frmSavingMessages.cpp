#include "storage/forms/frmSavingMessages.h"

#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QVBoxLayout>
#include <algorithm>

namespace tallyhorn {
namespace {

/// The range of the progress bar: more steps than the bar has pixels.
constexpr int ProgressSteps = 1000;

/// Formats the number as 1,234,567 in every locale, because the texts around it are always English.
QString Grouped(std::uint64_t number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(qulonglong{number});
}

}  // namespace

frmSavingMessages::frmSavingMessages(Work work, QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      pgbProgress(new QProgressBar(this)),
      lblProgress(new QLabel(this)) {
    const bool loading = work == Work::Loading;
    setObjectName(QStringLiteral("frmSavingMessages"));
    setWindowTitle(loading ? QStringLiteral("Loading Messages ... Please Wait")
                           : QStringLiteral("Saving Messages ... Please Wait"));
    auto* const lblWait = new QLabel(
        loading
            ? QStringLiteral("The Tallyhorn Listener Console is loading received messages from disk.  Please "
                             "wait...")
            : QStringLiteral("The Tallyhorn Listener Console is saving received messages to disk.  Please "
                             "wait..."),
        this);
    lblWait->setObjectName(QStringLiteral("lblWait"));
    lblWait->setTextFormat(Qt::PlainText);
    pgbProgress->setObjectName(QStringLiteral("pgbProgress"));
    pgbProgress->setAccessibleName(QStringLiteral("Messages loaded"));
    pgbProgress->setRange(0, ProgressSteps);
    pgbProgress->setTextVisible(false);
    pgbProgress->setVisible(loading);
    lblProgress->setObjectName(QStringLiteral("lblProgress"));
    lblProgress->setTextFormat(Qt::PlainText);
    // An empty label has no height, so the window would grow when the first number is shown.
    lblProgress->setMinimumHeight(lblProgress->fontMetrics().height());
    lblProgress->setVisible(loading);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(lblWait);
    layout->addWidget(pgbProgress);
    layout->addWidget(lblProgress);
}

void frmSavingMessages::ShowProgress(std::uint64_t done, std::uint64_t total) {
    const std::uint64_t end = std::max(done, total);
    pgbProgress->setValue(end == 0 ? 0 : static_cast<int>(done * ProgressSteps / end));
    lblProgress->setText(QStringLiteral("%1 of %2").arg(Grouped(done), Grouped(end)));
}

}  // namespace tallyhorn
