#include "views/forms/ServerStatusBar.h"

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QStatusBar>
#include <algorithm>

#include "ui/AnsiString.h"
#include "ui/Controls.h"
#include "views/forms/NoticeButton.h"

namespace tallyhorn {
namespace {

/// Work that takes no longer than this, in milliseconds, is shown without a progress bar.
constexpr qint64 ShortWork = 500;
constexpr int ProgressSteps = 1000;

}  // namespace

ServerStatusBar::ServerStatusBar(QMainWindow& window, Gate& gate) : gate_(gate) {
    constexpr std::array<int, 3> Stretches = {2, 2, 3};
    QStatusBar* const bar = window.statusBar();
    for (std::size_t i = 0; i < stbMain.size(); ++i) {
        QLabel* const panel = MakeLabel(QString(), QStringLiteral("stbMain%1").arg(i + 1), &window);
        panel->setContentsMargins(6, 0, 6, 0);
        panel->setAutoFillBackground(true);
        bar->addWidget(panel, Stretches.at(i));
        stbMain.at(i) = panel;
    }
    pgbWork = new QProgressBar(&window);
    pgbWork->setObjectName(QStringLiteral("pgbWork"));
    pgbWork->setAccessibleName(QStringLiteral("Work done"));
    pgbWork->setRange(0, ProgressSteps);
    pgbWork->setMaximumHeight(window.fontMetrics().height());
    pgbWork->hide();
    bar->addPermanentWidget(pgbWork);
    cmdNotice = new NoticeButton(&window);
    bar->addPermanentWidget(cmdNotice);
    bar->setObjectName(QStringLiteral("stbMain"));
    ShowPanel(StatusPanel::ProcessingStatus, "Status: Processing Messages");
}

void ServerStatusBar::ShowPanel(StatusPanel panel, std::string_view text) {
    stbMain.at(static_cast<std::size_t>(panel) - 1)->setText(ToQString(text));
}

void ServerStatusBar::ShowPanelToolTip(StatusPanel panel, std::string_view text) {
    stbMain.at(static_cast<std::size_t>(panel) - 1)->setToolTip(ToQString(text));
}

void ServerStatusBar::ShowNotice(Notice notice, std::string_view details) {
    cmdNotice->ShowNotice(notice, ToQString(details));
}

void ServerStatusBar::BeginWork() {
    // The gate is told, because long work may begin inside a dialog, which alone does not count as work.
    works_.emplace_back(gate_);
    if (works_.size() > 1)
        return;
    QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    sinceBegin_.start();
}

void ServerStatusBar::ShowProgress(std::uint64_t done, std::uint64_t total) {
    if (works_.size() != 1 || total == 0 || sinceBegin_.elapsed() < ShortWork)
        return;
    pgbWork->setValue(static_cast<int>(std::min(done, total) * ProgressSteps / total));
    pgbWork->show();
}

void ServerStatusBar::EndWork() {
    if (works_.size() == 1) {
        pgbWork->hide();
        QApplication::restoreOverrideCursor();
    }
    works_.pop_back();
}

}  // namespace tallyhorn
