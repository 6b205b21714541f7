#include "views/forms/frmServer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QScreen>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <algorithm>

#include "desktop/help/HelpContexts.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"
#include "ui/Pictures.h"
#include "views/forms/ConsolidatedTreeView.h"
#include "views/forms/DetailWindow.h"
#include "views/forms/MessageListView.h"
#include "views/forms/ServerPages.h"

namespace tallyhorn {
namespace {

constexpr int ToolBarPadding = 8;  ///< the space around a line of text, in pixels
constexpr int CheckInterval = 500;
constexpr int ResumeInterval = 1000;
constexpr int DismissInterval = 50;

}  // namespace

frmServer::frmServer(ServerLifetime& lifetime, Gate& gate)
    : lifetime_(lifetime),
      queue_(gate),
      bars_(*this, [this](ServerCommand command) { Do(command); }),
      status_(*this, gate) {
    setObjectName(QStringLiteral("frmServer"));
    setWindowTitle(QStringLiteral("Tallyhorn Listener Console"));
    setWindowIcon(ConsoleIcon());
    setProperty(HelpContextProperty, HelpNumber(HelpContext::MainWindow));
    setContextMenuPolicy(Qt::NoContextMenu);
    pages_ = new ServerPages(this);
    setCentralWidget(pages_);
    connect(&pages_->Tabs(), &QTabWidget::currentChanged, this, [this] {
        const bool tree = CurrentPage() == MessagePage::Consolidated;
        setProperty(HelpContextProperty, HelpNumber(tree ? HelpContext::Tree : HelpContext::MainWindow));
        PlaceParts();
    });
    timCheck = new QTimer(this);
    timCheck->setObjectName(QStringLiteral("timCheck"));
    timCheck->setInterval(CheckInterval);
    timDismiss = new QTimer(this);
    timDismiss->setInterval(DismissInterval);
    connect(timDismiss, &QTimer::timeout, this, &frmServer::DismissQuestions);
    tmrResumeProcessing = new QTimer(this);
    tmrResumeProcessing->setObjectName(QStringLiteral("tmrResumeProcessing"));
    tmrResumeProcessing->setInterval(ResumeInterval);
    resize(InPixels(15000, *this), InPixels(11000, *this));
}

// ---- building

void frmServer::Load(const Parts& parts) {
    parts_ = std::make_unique<const Parts>(parts);
    pages_->Load(parts.Context.Received);
    ConnectViews();
    activeView_ = new ActiveViewMark(pages_->Views(), pages_->Tabs(), [this](ViewNumber view) {
        parts_->Context.Received.SetActiveView(view);
    });
    details_ = new DetailWindow(
        {parts.Context, parts.Commands, queue_, parts.Others, pages_->Lists(), pages_->Tree()}, this);
    connect(timCheck, &QTimer::timeout, this, [this] { queue_.RunAsWork(parts_->TimCheckTick); });
    connect(tmrResumeProcessing, &QTimer::timeout, this, [this] { queue_.RunAsWork(parts_->ResumeTick); });
    timCheck->start();
    LayOut();
}

void frmServer::ConnectViews() {
    const auto touch = [this](ViewNumber view) { parts_->Context.Received.SetActiveView(view); };
    const auto erase = [this] { Do(ServerCommand::DeleteMessages); };
    for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
        MessageListView* const list = &pages_->List(view);
        connect(list, &MessageListView::Touched, this, [touch, view] { touch(view); });
        connect(list, &MessageListView::MouseReleased, this,
                [this, view] { pages_->KeepColumnWidths(view); });
        connect(list, &MessageListView::DeleteRequested, this, erase);
    }
    ConsolidatedTreeView* const tree = &pages_->Tree();
    connect(tree, &ConsolidatedTreeView::Touched, this, [touch] { touch(ConsolidatedView); });
    connect(tree, &ConsolidatedTreeView::DeleteRequested, this, erase);
}

// ---- work and commands

void frmServer::Do(ServerCommand command) {
    constexpr std::array Dialogs = {ServerCommand::ToggleFilter, ServerCommand::ManageFilters,
                                    ServerCommand::Preferences, ServerCommand::Help, ServerCommand::About};
    const bool opensDialog = std::find(Dialogs.begin(), Dialogs.end(), command) != Dialogs.end();
    // View and page are read now, because the user may change to others while the command waits.
    const ViewNumber view = parts_->Context.Received.ActiveView();
    const MessagePage page = CurrentPage();
    // A command is not queued twice for the same view and page, except Pause, whose second call undoes the
    // first.  The page may be -1, so the key counts pages from 0 for none.
    std::optional<int> key =
        (static_cast<int>(command) * (ConsolidatedView + 1) + view) * (MessagePageCount + 1) +
        static_cast<int>(page) + 1;
    if (command == ServerCommand::Pause)
        key.reset();
    queue_.Run([this, command, view, page] { Execute(command, view, page); },
               opensDialog ? CommandQueue::Kind::Dialog : CommandQueue::Kind::Work, key);
}

void frmServer::Execute(ServerCommand command, ViewNumber view, MessagePage page) {
    switch (command) {
        case ServerCommand::ViewMessage:
            return details_->ViewMessageDetails(view, page);
        case ServerCommand::DeleteMessages:
            return parts_->Commands.DeleteMessages(view, page);
        case ServerCommand::ClearAll:
            return parts_->Commands.ClearAllMessages(page);
        case ServerCommand::Exit:
            return Close(true);
        case ServerCommand::Pause:
            return parts_->PauseCommand();
        case ServerCommand::EventLog:
            return parts_->Others.OpenEventViewer(view, page);
        case ServerCommand::Export:
            return parts_->Others.ExportMessages(page);
        case ServerCommand::ToggleFilter:
            return parts_->Others.ToggleViewFilter();
        case ServerCommand::ManageFilters:
            return parts_->Others.ManageSuppressionFilters();
        case ServerCommand::Preferences:
            return parts_->Others.ShowPreferences();
        case ServerCommand::Help:
            return parts_->Others.ShowHelp();
        case ServerCommand::About:
            return parts_->Others.ShowAbout();
    }
}

void frmServer::RunPendingEvents() {
    queue_.RunAsWork([this] {
        pages_->ShowNewRows();
        QCoreApplication::processEvents();
    });
}

// ---- what the rules ask for

MessagePage frmServer::CurrentPage() const {
    return static_cast<MessagePage>(pages_->Tabs().currentIndex());
}

bool frmServer::HasPage(MessagePage page) const {
    return pages_->Tabs().isTabVisible(static_cast<int>(page));
}

std::optional<std::int32_t> frmServer::SelectedSlot(ViewNumber list) const {
    return pages_->List(list).SelectedSlot();
}

void frmServer::EnableResumeTimer(bool enabled) {
    enabled ? tmrResumeProcessing->start() : tmrResumeProcessing->stop();
}

void frmServer::ShowPauseCommand(bool paused) {
    bars_.ShowPause(paused);
}

void frmServer::ShowFilterCommand(bool inForce) {
    bars_.ShowFilter(inForce);
}

void frmServer::ShowPage(MessagePage page, bool shown) {
    pages_->Tabs().setTabVisible(static_cast<int>(page), shown);
    // The tab bar reduces the height of the pages as long as any tab is visible.
    LayOutLater();
}

// ---- closing

void frmServer::DismissQuestions() {
    // The loop ends at a dialog that is still open after close() returned true.
    const QWidget* asked = nullptr;
    QWidget* modal = QApplication::activeModalWidget();
    while (modal != nullptr && modal != asked && modal->close()) {
        asked = modal;
        modal = QApplication::activeModalWidget();
    }
}

void frmServer::KeepDismissingQuestions() {
    timDismiss->start();
    DismissQuestions();
}

void frmServer::CloseWithoutQuestion() {
    KeepDismissingQuestions();
    queue_.RunLast([this] {
        timDismiss->stop();
        Close(false);
    });
}

void frmServer::closeEvent(QCloseEvent* event) {
    event->ignore();
    // The event is spontaneous if the user closes the window; any other is part of the end of the session.
    if (event->spontaneous())
        Do(ServerCommand::Exit);
    else
        lifetime_.End();
}

void frmServer::Close(bool byUser) {
    if (!lifetime_.QueryUnload(byUser))
        return;
    timCheck->stop();
    tmrResumeProcessing->stop();
    queue_.RunLast([] {});
    details_->Close();
    lifetime_.Unload();
}

// ---- layout

void frmServer::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    LayOut();
}

void frmServer::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        LayOut();
}

void frmServer::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    LayOutLater();
}

/// Lays out later, because the tab bar has its height only once it is shown.
void frmServer::LayOutLater() {
    QMetaObject::invokeMethod(this, &frmServer::LayOut, Qt::QueuedConnection);
}

void frmServer::LayOut() {
    PlaceParts();
    if (CanLayOut())
        pages_->ApplyColumnWidths();
}

void frmServer::PlaceParts() {
    if (!CanLayOut())
        return;
    // The tool bar gets what the status bar leaves of the height of both bars, or more if the font is large.
    const int statusHeight = statusBar()->sizeHint().height();
    bars_.ToolBar()->setFixedHeight(std::max(InPixels(ServerLayout::BarsHeight, *this) - statusHeight,
                                             fontMetrics().height() + ToolBarPadding));
    pages_->Place();
}

void frmServer::SetColumnWidths(const ColumnWidthArray& widths) {
    pages_->SetColumnWidths(widths);
    LayOut();
}

void frmServer::RestoreSize(TwipsSize size) {
    const QSize available = screen()->availableGeometry().size();
    const auto fit = [this](Twips wanted, int present, int most) {
        return wanted > 0 ? std::min(InPixels(wanted, *this), most) : present;
    };
    resize(fit(size.Width, width(), available.width()), fit(size.Height, height(), available.height()));
}

TwipsSize frmServer::RestoredSize() const {
    const QSize size = isMaximized() ? normalGeometry().size() : this->size();
    return {InTwips(size.width(), *this), InTwips(size.height(), *this)};
}

}  // namespace tallyhorn
