#include "views/forms/frmServer.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <algorithm>
#include <utility>

#include "views/forms/AnsiString.h"
#include "views/forms/ConsolidatedTreeView.h"
#include "views/forms/MessageListView.h"
#include "views/forms/Pictures.h"

namespace tallyhorn {
namespace {

constexpr int TwipsPerInch = 1440;
constexpr Twips FrameMargin = 135;
constexpr Twips ListMargin = 240;
constexpr Twips BelowTabs = 60;    ///< between the tabs and the first frame
constexpr int ToolBarPadding = 8;  ///< in pixels, around a line of text
constexpr int CheckInterval = 500;
constexpr int ResumeInterval = 1000;
/// Between one handling of datagrams and the next, in milliseconds, unless more wait than one can handle.  In
/// a storm nobody reads every line, and showing them takes as long as all else.
constexpr int ArrivalInterval = 40;
constexpr int StormInterval = 80;
constexpr std::uint64_t StormSize = 1000;  ///< datagrams handled at a time

constexpr std::array<const char*, MessagePageCount> PageCaptions = {
    "Received Net&BIOS Messages", "Received &Syslog Messages", "Consolidated S&yslog Messages"};
constexpr const char* ConsolidatedCaption = "Consoli&dated Syslog Messages";
/// From the top of the page; the list in the first frame is the last of its channel.
constexpr std::array<const char*, EventListCount> NetBiosCaptions = {
    "I&nformation Events and Success Audits", "W&arning Events", "C&ritical Events (Errors, Failure Audits)"};
constexpr std::array<const char*, EventListCount> SyslogCaptions = {
    "&Information Events and Success Audits", "&Warning Events", "&Critical Events (Errors, Failure Audits)"};

/// Lets the work depth follow a piece of work, whatever ends it.
class Depth {
public:
    explicit Depth(int& depth) : depth_(depth) { ++depth_; }
    ~Depth() { --depth_; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;

private:
    int& depth_;
};

/// A size that does not fit leaves the control as it was.
void ResizeIfFits(QWidget* widget, int width, int height) {
    if (width >= 0 && height >= 0)
        widget->resize(width, height);
}

}  // namespace

frmServer::frmServer(ServerLifetime& lifetime) : lifetime_(lifetime) {
    setObjectName(QStringLiteral("frmServer"));
    setWindowTitle(QStringLiteral("Tallyhorn Listener Console"));
    setWindowIcon(ConsoleIcon());
    setContextMenuPolicy(Qt::NoContextMenu);
    BuildMenus();
    BuildToolBar();
    BuildPages();
    BuildStatusBar();
    timCheck = new QTimer(this);
    timCheck->setObjectName(QStringLiteral("timCheck"));
    timCheck->setInterval(CheckInterval);
    timArrival = new QTimer(this);
    timArrival->setObjectName(QStringLiteral("timArrival"));
    timArrival->setSingleShot(true);
    timArrival->setTimerType(Qt::PreciseTimer);
    tmrResumeProcessing = new QTimer(this);
    tmrResumeProcessing->setObjectName(QStringLiteral("tmrResumeProcessing"));
    tmrResumeProcessing->setInterval(ResumeInterval);
    resize(Pixels(15000), Pixels(11000));
}

// ---- building

QAction* frmServer::AddCommand(const char* name, const QString& caption, Command command) {
    auto* const action = new QAction(caption, this);
    action->setObjectName(QString::fromLatin1(name));
    connect(action, &QAction::triggered, this,
            [this, command = std::move(command)] { RunWhenIdle(command); });
    return action;
}

void frmServer::BuildMenus() {
    mnuFile_DeleteMsg = AddCommand("mnuFile_DeleteMsg", tr("&Delete Selected Message(s)"),
                                   [this] { commands_->DeleteMessages(); });
    mnuFile_ClearAll =
        AddCommand("mnuFile_ClearAll", tr("&Clear All Messages"), [this] { commands_->ClearAllMessages(); });
    QAction* const mnuFile_Exit = AddCommand("mnuFile_Exit", tr("E&xit"), [this] { Close(true); });
    mnuEditPause =
        AddCommand("mnuEditPause", tr("&Pause Message Processing"), [this] { cycle_->PauseCommand(); });

    QMenu* const mnuFile = menuBar()->addMenu(tr("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuFile->addActions({mnuFile_DeleteMsg, mnuFile_ClearAll});
    mnuFile->addSeparator();
    mnuFile->addAction(mnuFile_Exit);
    QMenu* const mnuEdit = menuBar()->addMenu(tr("&Edit"));
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuEdit->addAction(mnuEditPause);
}

void frmServer::BuildToolBar() {
    tbrMain = new QToolBar(tr("Commands"), this);
    tbrMain->setObjectName(QStringLiteral("tbrMain"));
    tbrMain->setMovable(false);
    tbrMain->setFloatable(false);
    tbrMain->setIconSize(QSize(16, 16));
    const auto addButton = [this](const char* key, const QString& tip, CommandPicture picture,
                                  QAction* command) {
        auto* const button = new QAction(CommandIcon(picture), tip, this);
        button->setObjectName(QString::fromLatin1(key));
        connect(button, &QAction::triggered, command, &QAction::trigger);
        tbrMain->addAction(button);
        return button;
    };
    addButton("delete", tr("Delete Message(s)"), CommandPicture::Delete, mnuFile_DeleteMsg);
    addButton("clear", tr("Clear All Messages"), CommandPicture::Clear, mnuFile_ClearAll);
    tbrMain->addSeparator();
    tbrPause = addButton("pause", tr("Pause Message Processing"), CommandPicture::Pause, mnuEditPause);
    addToolBar(tbrMain);
}

void frmServer::BuildPages() {
    auto* const inside = new QWidget(this);
    setCentralWidget(inside);
    tabMessageTypes = new QTabWidget(inside);
    tabMessageTypes->setObjectName(QStringLiteral("tabMessageTypes"));
    for (const char* const caption : PageCaptions)
        tabMessageTypes->addTab(new QWidget, QString::fromLatin1(caption));

    const auto addFrame = [this](MessagePage page, const char* caption, const QString& name) {
        auto* const frame =
            new QGroupBox(QString::fromLatin1(caption), tabMessageTypes->widget(static_cast<int>(page)));
        frame->setObjectName(name);
        return frame;
    };
    for (std::size_t i = 0; i < EventListCount; ++i) {
        fraNetBiosTypes.at(i) =
            addFrame(MessagePage::NetBios, NetBiosCaptions.at(i), QStringLiteral("fraNetBiosTypes%1").arg(i));
        fraSyslogTypes.at(i) =
            addFrame(MessagePage::Syslog, SyslogCaptions.at(i), QStringLiteral("fraSyslogTypes%1").arg(i));
    }
    fraConsolidated =
        addFrame(MessagePage::Consolidated, ConsolidatedCaption, QStringLiteral("fraConsolidated"));
    connect(tabMessageTypes, &QTabWidget::currentChanged, this, &frmServer::PlaceParts);
}

void frmServer::BuildStatusBar() {
    constexpr std::array<int, 3> Stretches = {2, 2, 3};
    for (std::size_t i = 0; i < stbMain.size(); ++i) {
        auto* const panel = new QLabel(this);
        panel->setObjectName(QStringLiteral("stbMain%1").arg(i + 1));
        panel->setTextFormat(Qt::PlainText);
        panel->setContentsMargins(6, 0, 6, 0);
        panel->setAutoFillBackground(true);
        statusBar()->addWidget(panel, Stretches.at(i));
        stbMain.at(i) = panel;
    }
    statusBar()->setObjectName(QStringLiteral("stbMain"));
    ShowPanel(StatusPanel::ProcessingStatus, "Status: Processing Messages");
}

void frmServer::Load(const Parts& parts) {
    received_ = &parts.Received;
    commands_ = &parts.Commands;
    cycle_ = &parts.Cycle;
    syslog_ = &parts.Syslog;
    BuildLists(fraNetBiosTypes, 0);
    BuildLists(fraSyslogTypes, FirstSyslogView);
    BuildTree();
    connect(timCheck, &QTimer::timeout, this, [this] { RunAsWork([this] { cycle_->TimCheckTick(); }); });
    connect(timArrival, &QTimer::timeout, this, &frmServer::ArrivalTick);
    connect(tmrResumeProcessing, &QTimer::timeout, this,
            [this] { RunWhenIdle([this] { cycle_->ResumeTick(); }); });
    EnablePollingTimer(true);
    LayOut();
}

void frmServer::BuildLists(const std::array<QGroupBox*, EventListCount>& frames, ViewNumber firstView) {
    auto& lists = IsSyslogView(firstView) ? lvwSyslog : lvwMessages;
    const QString name =
        IsSyslogView(firstView) ? QStringLiteral("lvwSyslog%1") : QStringLiteral("lvwMessages%1");
    for (std::size_t frame = 0; frame < frames.size(); ++frame) {
        const std::size_t element = frames.size() - 1 - frame;
        const auto view = static_cast<ViewNumber>(firstView + static_cast<ViewNumber>(element));
        auto* const list = new MessageListView(received_->List(view), frames.at(frame));
        list->setObjectName(name.arg(element));
        list->setAccessibleName(WithoutAccessKey(frames.at(frame)->title()));
        lists.at(element) = list;
        ConnectList(view);
    }
}

void frmServer::BuildTree() {
    tvwConsolidated = new ConsolidatedTreeView(received_->Tree, fraConsolidated);
    tvwConsolidated->setObjectName(QStringLiteral("tvwConsolidated"));
    tvwConsolidated->setAccessibleName(WithoutAccessKey(fraConsolidated->title()));
    connect(tvwConsolidated, &ConsolidatedTreeView::Touched, this,
            [this] { received_->ActiveView = ConsolidatedView; });
    connect(tvwConsolidated, &ConsolidatedTreeView::DeleteRequested, this,
            [this] { RunWhenIdle([this] { commands_->DeleteMessages(); }); });
}

void frmServer::ConnectList(ViewNumber view) {
    MessageListView* const list = ListView(view);
    connect(list, &MessageListView::Touched, this, [this, view] { received_->ActiveView = view; });
    connect(list, &MessageListView::MouseReleased, this, [this, view] { KeepColumnWidths(view); });
    connect(list, &MessageListView::DeleteRequested, this,
            [this] { RunWhenIdle([this] { commands_->DeleteMessages(); }); });
}

// ---- work and commands

void frmServer::RunPendingEvents() {
    RunAsWork([this] {
        for (ViewNumber view = 0; view < ConsolidatedView; ++view)
            ListView(view)->TakeInRows();
        if (tvwConsolidated->isVisible())
            tvwConsolidated->TakeInNodes();
        QCoreApplication::processEvents();
    });
}

void frmServer::HandleDatagrams() {
    if (timArrival->isActive())
        return;
    const qint64 since = sinceArrival_.isValid() ? sinceArrival_.elapsed() : arrivalInterval_;
    timArrival->start(static_cast<int>(std::clamp<qint64>(arrivalInterval_ - since, 0, arrivalInterval_)));
}

/// By a timer even where more wait already: between one slice and the next all other events have their turn.
void frmServer::ArrivalTick() {
    auto waiting = SyslogEndpoint::Waiting::Nothing;
    const std::uint64_t before = syslog_->ReceivedCount();
    RunAsWork([&] {
        waiting = syslog_->DataArrival();
        cycle_->MissedTick();
    });
    sinceArrival_.start();
    arrivalInterval_ = syslog_->ReceivedCount() - before < StormSize ? ArrivalInterval : StormInterval;
    if (waiting != SyslogEndpoint::Waiting::Nothing)
        timArrival->start(waiting == SyslogEndpoint::Waiting::More ? 0 : arrivalInterval_);
}

/// A command given inside other work would run on state that is half way from one thing to the next, and
/// would hold that work up for as long as its question stands open.
void frmServer::RunWhenIdle(const Command& command) {
    if (workDepth_ == 0)
        RunAsWork(command);
    else
        waitingCommands_.push_back(command);
}

void frmServer::RunAsWork(const Command& work) {
    {
        const Depth depth(workDepth_);
        work();
    }
    if (workDepth_ == 0 && !waitingCommands_.empty())
        QMetaObject::invokeMethod(this, &frmServer::RunWaitingCommands, Qt::QueuedConnection);
}

void frmServer::RunWaitingCommands() {
    for (const Command& command : std::exchange(waitingCommands_, {}))
        RunWhenIdle(command);
}

// ---- what the rules ask for

MessagePage frmServer::CurrentPage() const {
    return static_cast<MessagePage>(tabMessageTypes->currentIndex());
}

void frmServer::ShowPanel(StatusPanel panel, std::string_view text) {
    stbMain.at(static_cast<std::size_t>(panel) - 1)->setText(ToQString(text));
}

void frmServer::ShowPanelToolTip(StatusPanel panel, std::string_view text) {
    stbMain.at(static_cast<std::size_t>(panel) - 1)->setToolTip(ToQString(text));
}

void frmServer::EnableView(ViewNumber number, bool enabled) {
    QWidget* const view = View(number);
    // Else the focus would go on to the next list by itself, and the next key press would act on that.
    if (!enabled && view->hasFocus())
        tabMessageTypes->tabBar()->setFocus();
    view->setEnabled(enabled);
}

void frmServer::ShowView(ViewNumber number, bool shown) {
    QWidget* const view = View(number);
    if (!shown && view->hasFocus()) {
        focusBeforeHiding_ = view;
        tabMessageTypes->tabBar()->setFocus();
    }
    view->setVisible(shown);
    if (shown && focusBeforeHiding_ == view) {
        focusBeforeHiding_ = nullptr;
        view->setFocus();
    }
}

void frmServer::EnablePollingTimer(bool enabled) {
    enabled ? timCheck->start() : timCheck->stop();
}

void frmServer::EnableResumeTimer(bool enabled) {
    enabled ? tmrResumeProcessing->start() : tmrResumeProcessing->stop();
}

void frmServer::ShowPauseCommand(bool paused) {
    tbrPause->setIcon(CommandIcon(paused ? CommandPicture::Resume : CommandPicture::Pause));
    tbrPause->setText(paused ? tr("Resume Message Processing") : tr("Pause Message Processing"));
    mnuEditPause->setText(paused ? tr("&Resume Message Processing") : tr("&Pause Message Processing"));
}

void frmServer::ShowPage(MessagePage page, bool shown) {
    tabMessageTypes->setTabVisible(static_cast<int>(page), shown);
}

// ---- closing

void frmServer::DismissQuestions() {
    while (QWidget* const modal = QApplication::activeModalWidget()) {
        if (!modal->close())
            break;
    }
}

void frmServer::CloseWithoutQuestion() {
    DismissQuestions();
    RunWhenIdle([this] { Close(false); });
}

void frmServer::closeEvent(QCloseEvent* event) {
    event->ignore();
    // The window system brings the user's own wish; without it the event is part of the end of the session.
    // Either may come in the middle of whatever runs, and then waits its turn.
    const bool byUser = event->spontaneous();
    RunWhenIdle([this, byUser] { Close(byUser); });
}

void frmServer::Close(bool byUser) {
    if (!lifetime_.QueryUnload(byUser))
        return;
    EnablePollingTimer(false);
    EnableResumeTimer(false);
    timArrival->stop();
    waitingCommands_.clear();
    lifetime_.Unload();
}

// ---- layout

int frmServer::Pixels(Twips length) const {
    return static_cast<int>(static_cast<std::int64_t>(length) * logicalDpiX() / TwipsPerInch);
}

Twips frmServer::InTwips(int pixels) const {
    return static_cast<Twips>(static_cast<std::int64_t>(pixels) * TwipsPerInch / logicalDpiX());
}

void frmServer::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    LayOut();
}

void frmServer::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange && tabMessageTypes != nullptr)
        LayOut();
}

/// The tabs have their height only once they are shown.
void frmServer::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    QMetaObject::invokeMethod(this, &frmServer::LayOut, Qt::QueuedConnection);
}

void frmServer::LayOut() {
    PlaceParts();
    ApplyColumnWidths();
}

void frmServer::PlaceParts() {
    if (isMinimized() || received_ == nullptr)
        return;
    // Tool bar and status bar take what the layout leaves them; larger fonts make them larger than that.
    const int statusHeight = statusBar()->sizeHint().height();
    tbrMain->setFixedHeight(
        std::max(Pixels(ServerLayout::BarsHeight) - statusHeight, fontMetrics().height() + ToolBarPadding));
    const QSize room = centralWidget()->size();
    tabMessageTypes->resize(room);
    const QWidget* const page = tabMessageTypes->currentWidget();
    const int pageTop = page != nullptr ? page->mapTo(tabMessageTypes, QPoint(0, 0)).y() : 0;
    const ServerLayout layout =
        LayOutServer({InTwips(room.width()), InTwips(room.height()) + ServerLayout::BarsHeight},
                     InTwips(pageTop) + BelowTabs);

    const auto place = [this](QWidget* frame, QWidget* inside, int top, TwipsSize frameSize,
                              TwipsSize insideSize) {
        frame->move(Pixels(FrameMargin), top);
        ResizeIfFits(frame, Pixels(frameSize.Width), Pixels(frameSize.Height));
        // Below the frame's line, which stands lower where letters are taller; what is left below is the
        // rest.
        const int lowest = frame->height() - Pixels(insideSize.Height);
        const int line = frame->contentsRect().top();
        inside->move(Pixels(ListMargin), std::max(Pixels(ListMargin), std::min(line, lowest)));
        ResizeIfFits(inside, Pixels(insideSize.Width), Pixels(insideSize.Height));
    };
    for (std::size_t i = 0; i < fraNetBiosTypes.size(); ++i) {
        const int top = Pixels(layout.FrameTops.at(i)) - pageTop;
        const std::size_t element = fraNetBiosTypes.size() - 1 - i;
        place(fraNetBiosTypes.at(i), lvwMessages.at(element), top, layout.Frame, layout.List);
        place(fraSyslogTypes.at(i), lvwSyslog.at(element), top, layout.Frame, layout.List);
    }
    place(fraConsolidated, tvwConsolidated, Pixels(layout.FrameTops.front()) - pageTop,
          layout.ConsolidatedFrame, layout.Tree);
}

void frmServer::ApplyColumnWidths() {
    if (isMinimized() || received_ == nullptr)
        return;
    for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
        MessageListView* const list = ListView(view);
        const ColumnWidthArray widths = ListColumnWidths(columnWidths_, InTwips(list->width()));
        for (int column = 0; column < SizedColumnCount; ++column)
            list->SetColumnWidth(column, Pixels(widths.at(static_cast<std::size_t>(column))));
    }
}

/// The widths of the list under the mouse become those of its channel; the other channel takes them when the
/// window is laid out anew.
void frmServer::KeepColumnWidths(ViewNumber view) {
    const ViewNumber first = IsSyslogView(view) ? FirstSyslogView : ViewNumber{0};
    for (int column = 0; column < SizedColumnCount; ++column) {
        Twips& kept = columnWidths_.at(static_cast<std::size_t>(column));
        const int width = ListView(view)->ColumnWidth(column);
        if (Pixels(kept) == width && kept != 0)
            continue;
        kept = InTwips(width);
        for (ViewNumber other = first; other < first + EventListCount; ++other)
            ListView(other)->SetColumnWidth(column, width);
    }
}

QWidget* frmServer::View(ViewNumber view) const {
    if (view == ConsolidatedView)
        return tvwConsolidated;
    return ListView(view);
}

MessageListView* frmServer::ListView(ViewNumber view) const {
    return (IsSyslogView(view) ? lvwSyslog : lvwMessages).at(ListOfView(view));
}

void frmServer::SetColumnWidths(const ColumnWidthArray& widths) {
    columnWidths_ = widths;
    LayOut();
}

void frmServer::RestoreSize(TwipsSize size) {
    const QSize available = screen()->availableGeometry().size();
    const auto fit = [this](Twips wanted, int present, int most) {
        return wanted > 0 ? std::min(Pixels(wanted), most) : present;
    };
    resize(fit(size.Width, width(), available.width()), fit(size.Height, height(), available.height()));
}

TwipsSize frmServer::RestoredSize() const {
    const QSize size = isMaximized() ? normalGeometry().size() : this->size();
    return {InTwips(size.width()), InTwips(size.height())};
}

}  // namespace tallyhorn
