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
#include "views/forms/PageTabs.h"

namespace tallyhorn {
namespace {

constexpr int TwipsPerInch = 1440;
constexpr Twips FrameMargin = 135;
constexpr Twips ListMargin = 240;
constexpr int ToolBarPadding = 8;  ///< the space around a line of text, in pixels
constexpr int CheckInterval = 500;
constexpr int ResumeInterval = 1000;
constexpr int DismissInterval = 50;

constexpr const char* ConsolidatedCaption = "Consoli&dated Syslog Messages";

/// Does nothing if the width or height is negative, as in a very small window.
void ResizeIfFits(QWidget* widget, int width, int height) {
    if (width >= 0 && height >= 0)
        widget->resize(width, height);
}

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
    BuildPages();
    timCheck = new QTimer(this);
    timCheck->setObjectName(QStringLiteral("timCheck"));
    timCheck->setInterval(CheckInterval);
    timDismiss = new QTimer(this);
    timDismiss->setInterval(DismissInterval);
    connect(timDismiss, &QTimer::timeout, this, &frmServer::DismissQuestions);
    tmrResumeProcessing = new QTimer(this);
    tmrResumeProcessing->setObjectName(QStringLiteral("tmrResumeProcessing"));
    tmrResumeProcessing->setInterval(ResumeInterval);
    resize(Pixels(15000), Pixels(11000));
}

// ---- building

void frmServer::BuildPages() {
    auto* const inside = new QWidget(this);
    setCentralWidget(inside);
    tabMessageTypes =
        Named(new PageTabs(Pixels(ServerLayout::FramesTop), inside), QStringLiteral("tabMessageTypes"));
    for (const std::string_view caption : PageCaptions)
        tabMessageTypes->addTab(new QWidget, ToQString(caption));

    for (std::size_t channel = 0; channel < ChannelCount; ++channel) {
        const ChannelTraits& traits = TraitsOf(static_cast<Channel>(channel));
        for (std::size_t i = 0; i < EventListCount; ++i)
            channels_.at(channel).Frames.at(i) = AddFrame(traits.Page, traits.FrameCaptions.at(i),
                                                          ToQString(traits.FrameName) + QString::number(i));
    }
    fraConsolidated =
        AddFrame(MessagePage::Consolidated, ConsolidatedCaption, QStringLiteral("fraConsolidated"));
    connect(tabMessageTypes, &QTabWidget::currentChanged, this, [this] {
        const bool tree = CurrentPage() == MessagePage::Consolidated;
        setProperty(HelpContextProperty, HelpNumber(tree ? HelpContext::Tree : HelpContext::MainWindow));
        PlaceParts();
    });
}

QGroupBox* frmServer::AddFrame(MessagePage page, std::string_view caption, const QString& name) {
    auto* const frame = new QGroupBox(ToQString(caption), tabMessageTypes->widget(static_cast<int>(page)));
    frame->setObjectName(name);
    return frame;
}

void frmServer::Load(const Parts& parts) {
    parts_ = std::make_unique<const Parts>(parts);
    for (std::size_t channel = 0; channel < ChannelCount; ++channel)
        BuildLists(TraitsOf(static_cast<Channel>(channel)));
    BuildTree();
    activeView_ = new ActiveViewMark(AllViews(), *tabMessageTypes, [this](ViewNumber view) {
        parts_->Context.Received.SetActiveView(view);
    });
    details_ = new DetailWindow(
        {parts.Context, parts.Commands, queue_, parts.Others, AllLists(), *tvwConsolidated}, this);
    connect(timCheck, &QTimer::timeout, this, [this] { queue_.RunAsWork(parts_->TimCheckTick); });
    connect(tmrResumeProcessing, &QTimer::timeout, this, [this] { queue_.RunAsWork(parts_->ResumeTick); });
    timCheck->start();
    LayOut();
}

void frmServer::BuildLists(const ChannelTraits& traits) {
    ChannelControls& controls = ControlsOf(traits.Id);
    for (std::size_t frame = 0; frame < controls.Frames.size(); ++frame) {
        const std::size_t element = controls.Frames.size() - 1 - frame;
        const ViewNumber view = ViewOfList(traits.Id, element);
        auto* const list =
            new MessageListView(parts_->Context.Received.List(view), controls.Frames.at(frame));
        list->setObjectName(ToQString(traits.ListName) + QString::number(element));
        list->setAccessibleName(WithoutAccessKey(controls.Frames.at(frame)->title()));
        controls.Lists.at(element) = list;
        ConnectList(view);
    }
}

void frmServer::BuildTree() {
    tvwConsolidated = new ConsolidatedTreeView(parts_->Context.Received.Tree, fraConsolidated);
    tvwConsolidated->setObjectName(QStringLiteral("tvwConsolidated"));
    tvwConsolidated->setAccessibleName(WithoutAccessKey(fraConsolidated->title()));
    connect(tvwConsolidated, &ConsolidatedTreeView::Touched, this,
            [this] { parts_->Context.Received.SetActiveView(ConsolidatedView); });
    connect(tvwConsolidated, &ConsolidatedTreeView::DeleteRequested, this,
            [this] { Do(ServerCommand::DeleteMessages); });
}

void frmServer::ConnectList(ViewNumber view) {
    MessageListView* const list = ListView(view);
    connect(list, &MessageListView::Touched, this,
            [this, view] { parts_->Context.Received.SetActiveView(view); });
    connect(list, &MessageListView::MouseReleased, this, [this, view] { KeepColumnWidths(view); });
    connect(list, &MessageListView::DeleteRequested, this, [this] { Do(ServerCommand::DeleteMessages); });
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
        for (ViewNumber view = 0; view < ConsolidatedView; ++view)
            ListView(view)->ShowNewRows();
        if (tvwConsolidated->isVisible())
            tvwConsolidated->ShowNewNodes();
        QCoreApplication::processEvents();
    });
}

// ---- what the rules ask for

MessagePage frmServer::CurrentPage() const {
    return static_cast<MessagePage>(tabMessageTypes->currentIndex());
}

bool frmServer::HasPage(MessagePage page) const {
    return tabMessageTypes->isTabVisible(static_cast<int>(page));
}

std::optional<std::int32_t> frmServer::SelectedSlot(ViewNumber list) const {
    return ListView(list)->SelectedSlot();
}

void frmServer::EnableView(ViewNumber number, bool enabled) {
    QWidget* const view = View(number);
    // Qt would move the focus from a disabled list to the next list, and the next press of the Delete key
    // would then act on that list. focusWidget() is used because a dialog may be open in front of this
    // window.
    if (!enabled && focusWidget() == view)
        tabMessageTypes->tabBar()->setFocus();
    view->setEnabled(enabled);
}

void frmServer::ShowView(ViewNumber number, bool shown) {
    QWidget* const view = View(number);
    if (!shown && focusWidget() == view) {
        focusBeforeHiding_ = view;
        tabMessageTypes->tabBar()->setFocus();
    }
    view->setVisible(shown);
    if (shown && focusBeforeHiding_ == view) {
        focusBeforeHiding_ = nullptr;
        view->setFocus();
    }
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
    tabMessageTypes->setTabVisible(static_cast<int>(page), shown);
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
    ApplyColumnWidths();
}

void frmServer::PlaceParts() {
    if (isMinimized() || parts_ == nullptr)
        return;
    // The tool bar gets what the status bar leaves of the height of both bars, or more if the font is large.
    const int statusHeight = statusBar()->sizeHint().height();
    bars_.ToolBar()->setFixedHeight(
        std::max(Pixels(ServerLayout::BarsHeight) - statusHeight, fontMetrics().height() + ToolBarPadding));
    const QSize room = centralWidget()->size();
    tabMessageTypes->resize(room);
    const QWidget* const page = tabMessageTypes->currentWidget();
    const int pageTop = page != nullptr ? page->mapTo(tabMessageTypes, QPoint(0, 0)).y() : 0;
    const ServerLayout layout = LayOutServer(
        {InTwips(room.width()), InTwips(room.height()) + ServerLayout::BarsHeight}, InTwips(pageTop));

    const auto place = [this](QWidget* frame, QWidget* inside, int top, TwipsSize frameSize,
                              TwipsSize insideSize) {
        frame->move(Pixels(FrameMargin), top);
        ResizeIfFits(frame, Pixels(frameSize.Width), Pixels(frameSize.Height));
        // The list is placed below the frame's line, whose position depends on the font, but not beyond the
        // frame's lower edge.
        const int lowest = frame->height() - Pixels(insideSize.Height);
        const int line = frame->contentsRect().top();
        inside->move(Pixels(ListMargin), std::max(Pixels(ListMargin), std::min(line, lowest)));
        ResizeIfFits(inside, Pixels(insideSize.Width), Pixels(insideSize.Height));
    };
    for (const ChannelControls& controls : channels_) {
        for (std::size_t i = 0; i < controls.Frames.size(); ++i) {
            const std::size_t element = controls.Frames.size() - 1 - i;
            place(controls.Frames.at(i), controls.Lists.at(element), Pixels(layout.FrameTops.at(i)) - pageTop,
                  layout.Frame, layout.List);
        }
    }
    place(fraConsolidated, tvwConsolidated, Pixels(layout.FrameTops.front()) - pageTop,
          layout.ConsolidatedFrame, layout.Tree);
}

void frmServer::ApplyColumnWidths() {
    if (isMinimized() || parts_ == nullptr)
        return;
    for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
        MessageListView* const list = ListView(view);
        const ColumnWidthArray widths = ListColumnWidths(columnWidths_, InTwips(list->width()));
        for (int column = 0; column < SizedColumnCount; ++column)
            list->SetColumnWidth(column, Pixels(widths.at(static_cast<std::size_t>(column))));
    }
}

/// Gives all lists of the view's channel the view's column widths.  compatibility: the lists of the other
/// channel get them only at the next layout.
void frmServer::KeepColumnWidths(ViewNumber view) {
    for (int column = 0; column < SizedColumnCount; ++column) {
        Twips& kept = columnWidths_.at(static_cast<std::size_t>(column));
        const int width = ListView(view)->ColumnWidth(column);
        if (Pixels(kept) == width && kept != 0)
            continue;
        kept = InTwips(width);
        for (MessageListView* const list : ControlsOf(ChannelOfView(view)).Lists)
            list->SetColumnWidth(column, width);
    }
}

QWidget* frmServer::View(ViewNumber view) const {
    if (view == ConsolidatedView)
        return tvwConsolidated;
    return ListView(view);
}

MessageListView* frmServer::ListView(ViewNumber view) const {
    return channels_.at(static_cast<std::size_t>(ChannelOfView(view))).Lists.at(ListOfView(view));
}

frmServer::ChannelControls& frmServer::ControlsOf(Channel channel) {
    return channels_.at(static_cast<std::size_t>(channel));
}

std::array<MessageListView*, ConsolidatedView> frmServer::AllLists() const {
    std::array<MessageListView*, ConsolidatedView> lists{};
    for (ViewNumber view = 0; view < ConsolidatedView; ++view)
        lists.at(static_cast<std::size_t>(view)) = ListView(view);
    return lists;
}

ActiveViewMark::Views frmServer::AllViews() const {
    ActiveViewMark::Views views{};
    for (ViewNumber view = 0; view <= ConsolidatedView; ++view)
        views.at(static_cast<std::size_t>(view)) = View(view);
    return views;
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
