#include "desktop/help/forms/frmHelp.h"

#include <QAction>
#include <QApplication>
#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "desktop/help/HelpContexts.h"
#include "desktop/help/forms/HelpPageView.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"
#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

enum Side { ContentsSide, SearchSide };
constexpr int LocalRole = Qt::UserRole;
constexpr QSize FirstSize(980, 680);
constexpr int LeastWidth = 640;  ///< the help opens beside the asking window only if so much is free
constexpr int SideWidth = 290;
constexpr int RowPadding = 8;  ///< the sum of the space above and below a line of the contents, in pixels

std::string LocalOf(const QTreeWidgetItem& item) {
    return FromQString(item.data(0, LocalRole).toString());
}

}  // namespace

frmHelp::frmHelp(std::unique_ptr<const HelpBook> book)
    : QWidget(nullptr, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      book_(std::move(book)),
      pages_(book_->Pages()),
      txtPage(new HelpPageView(*book_, this)) {
    setObjectName(QStringLiteral("frmHelp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setProperty(HelpContextProperty, HelpNumber(HelpContext::Contents));
    setWindowTitle(ToVisibleLine(book_->Title()));
    setWindowIcon(ConsoleIcon());
    txtPage->setObjectName(QStringLiteral("txtPage"));
    txtPage->setAccessibleName(QStringLiteral("Page"));
    connect(txtPage, &QTextBrowser::sourceChanged, this, &frmHelp::FollowPage);
    connect(this, &frmHelp::Blocked, this, &frmHelp::StayInFront, Qt::QueuedConnection);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(BuildBar());
    layout->addWidget(BuildParts(), 1);
    FillContents();
    resize(FirstSize);
}

frmHelp::~frmHelp() {
    // txtPage refers to book_, which is destroyed before the child widgets, so txtPage is deleted first.
    delete txtPage;
}

QWidget* frmHelp::BuildBar() {
    auto* const bar = new QToolBar(this);
    auto* const back = AddCommand("mnuBack", tr("&Back"), Qt::ALT | Qt::Key_Left, &frmHelp::Back);
    auto* const forward =
        AddCommand("mnuForward", tr("&Forward"), Qt::ALT | Qt::Key_Right, &frmHelp::Forward);
    bar->addActions({back, forward});
    bar->addAction(AddCommand("mnuHome", tr("&Home"), Qt::ALT | Qt::Key_Home, &frmHelp::Home));
    bar->addSeparator();
    bar->addAction(AddCommand("mnuFind", tr("Fi&nd"), Qt::CTRL | Qt::Key_F, &frmHelp::StartSearch));
    AddCommand("mnuFindNext", tr("Find Next"), Qt::Key_F3, &frmHelp::FindNext);
    AddCommand("mnuFindPrevious", tr("Find Previous"), Qt::SHIFT | Qt::Key_F3, &frmHelp::FindPrevious);
    AddCommand("mnuClose", tr("Close"), Qt::Key_Escape, &frmHelp::Leave);
    connect(txtPage, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(txtPage, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    back->setEnabled(false);
    forward->setEnabled(false);
    return bar;
}

QWidget* frmHelp::BuildParts() {
    auto* const parts = new QSplitter(this);
    parts->addWidget(BuildSides());
    parts->addWidget(txtPage);
    parts->setStretchFactor(1, 1);
    parts->setSizes({SideWidth, FirstSize.width() - SideWidth});
    return parts;
}

QAction* frmHelp::AddCommand(const char* name, const QString& text, const QKeySequence& key,
                             void (frmHelp::*routine)()) {
    auto* const action = Named(new QAction(text, this), QString::fromLatin1(name));
    action->setShortcut(key);
    action->setToolTip(
        QStringLiteral("%1 (%2)").arg(WithoutAccessKey(text), key.toString(QKeySequence::NativeText)));
    connect(action, &QAction::triggered, this, routine);
    addAction(action);
    return action;
}

QWidget* frmHelp::BuildSides() {
    tabSides = Named(new QTabWidget(this), QStringLiteral("tabSides"));
    tvwContents = Named(new QTreeWidget(tabSides), QStringLiteral("tvwContents"));
    tvwContents->setAccessibleName(tr("Contents"));
    tvwContents->setHeaderHidden(true);
    connect(tvwContents, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        if (item != nullptr && !LocalOf(*item).empty())
            txtPage->ShowPage(LocalOf(*item));
    });
    tabSides->addTab(tvwContents, tr("&Contents"));
    tabSides->addTab(BuildSearch(), tr("&Search"));
    return tabSides;
}

QWidget* frmHelp::BuildSearch() {
    auto* const side = new QWidget(tabSides);
    txtFind = Named(new QLineEdit(side), QStringLiteral("txtFind"));
    txtFind->setAccessibleName(tr("Find in all pages"));
    txtFind->setPlaceholderText(tr("Find in all pages"));
    txtFind->setClearButtonEnabled(true);
    lvwFound = Named(new QListWidget(side), QStringLiteral("lvwFound"));
    lvwFound->setAccessibleName(tr("Pages found"));
    auto* const layout = new QVBoxLayout(side);
    layout->addWidget(txtFind);
    layout->addWidget(lvwFound);
    connect(txtFind, &QLineEdit::textChanged, this, &frmHelp::Search);
    connect(txtFind, &QLineEdit::returnPressed, this, &frmHelp::FindNext);
    connect(lvwFound, &QListWidget::itemActivated, this, [this] { ShowFoundPage(lvwFound->currentRow()); });
    connect(lvwFound, &QListWidget::itemClicked, this, [this] { ShowFoundPage(lvwFound->currentRow()); });
    return side;
}

void frmHelp::FillContents() {
    std::vector<QTreeWidgetItem*> open;  // for each depth, the last item, to which children are added
    for (const HelpEntry& entry : book_->Contents()) {
        const auto depth = std::min(static_cast<std::size_t>(entry.Depth), open.size());
        open.resize(depth);
        auto* const item = depth == 0 ? new QTreeWidgetItem(tvwContents) : new QTreeWidgetItem(open.back());
        item->setText(0, ToShownLine(entry.Name));
        item->setSizeHint(0, QSize(0, fontMetrics().height() + RowPadding));
        item->setData(0, LocalRole, ToQString(entry.Local));
        open.push_back(item);
    }
}

void frmHelp::ShowContext(unsigned context, WId owner) {
    owner_ = owner;
    txtPage->ShowPage(book_->PageOf(context));
    if (isMinimized())
        showNormal();
    if (!isVisible())
        PlaceBesideActiveWindow();
    create();
    // This must precede show(), which passes the transient parent to the window system.
    if (const QWidget* const owned = find(owner); owned != nullptr)
        windowHandle()->setTransientParent(owned->windowHandle());
    show();
    StayInFront();
    raise();
    activateWindow();
    txtPage->setFocus();
}

/// Moves the window, which is not shown yet, to the side with more room of the window in which the user asked
/// for help, so that both can be read.  Does nothing if the screen has too little room there.
void frmHelp::PlaceBesideActiveWindow() {
    const QWidget* const asked = QApplication::activeWindow();
    if (asked == nullptr || asked == this)
        return;
    const QRect screen = asked->screen()->availableGeometry();
    const QRect taken = asked->frameGeometry();
    // Both windows have frames of the same size.
    const QSize frame = taken.size() - asked->size();
    const int left = taken.left() - screen.left();
    const int right = screen.right() - taken.right();
    const int room = std::max(left, right) - frame.width();
    if (room < LeastWidth)
        return;
    resize(FirstSize.boundedTo(QSize(room, screen.height() - frame.height())));
    const int lowest = screen.bottom() + 1 - height() - frame.height();
    move(right >= left ? taken.right() + 1 : taken.left() - width() - frame.width(),
         std::clamp(taken.top(), screen.top(), std::max(screen.top(), lowest)));
}

void frmHelp::Home() {
    txtPage->ShowPage(book_->StartPage());
}

void frmHelp::Back() {
    txtPage->backward();
}

void frmHelp::Forward() {
    txtPage->forward();
}

/// Selects the page's line in the contents, with signals blocked, because they would open that page again.
void frmHelp::FollowPage(const QUrl& source) {
    const std::string page = HelpPageView::PageOf(source);
    const std::string local = source.hasFragment() ? page + "#" + FromQString(source.fragment()) : page;
    QTreeWidgetItem* best = nullptr;
    for (QTreeWidgetItemIterator item(tvwContents); *item != nullptr; ++item) {
        if (LocalOf(**item) == local || (best == nullptr && LocalOf(**item) == page))
            best = *item;
    }
    const QSignalBlocker quiet(tvwContents);
    tvwContents->setCurrentItem(best);
    if (best != nullptr)
        tvwContents->scrollToItem(best);
}

// ---- search

void frmHelp::StartSearch() {
    tabSides->setCurrentIndex(SearchSide);
    txtFind->setFocus();
    txtFind->selectAll();
}

/// Lists all pages that contain the text.
void frmHelp::Search() {
    const QString text = txtFind->text();
    for (std::size_t i = static_cast<std::size_t>(texts_.size()); i < pages_.size(); ++i)
        texts_.append(txtPage->PlainText(pages_[i]));
    lvwFound->clear();
    foundPages_.clear();
    for (std::size_t i = 0; i < pages_.size() && !text.isEmpty(); ++i) {
        const QString& said = texts_.at(static_cast<qsizetype>(i));
        const auto count = said.count(text, Qt::CaseInsensitive);
        if (count == 0)
            continue;
        const QString title = said.section(QLatin1Char('\n'), 0, 0);
        lvwFound->addItem(QStringLiteral("%1 (%2)").arg(ToShownLine(FromQString(title))).arg(count));
        foundPages_.push_back(pages_[i]);
    }
}

bool frmHelp::FindInPage(bool onward) {
    const QString text = txtFind->text();
    return !text.isEmpty() &&
           txtPage->find(text, onward ? QTextDocument::FindFlags() : QTextDocument::FindBackward);
}

/// Selects the next occurrence of the searched text in the page.  If there is none, shows the next page that
/// contains the text; after the last page, the first one is next.  If `onward` is false, searches backwards.
void frmHelp::Find(bool onward) {
    if (FindInPage(onward) || foundPages_.empty())
        return;
    const auto shown = std::find(foundPages_.begin(), foundPages_.end(), txtPage->ShownPage());
    const auto count = static_cast<int>(foundPages_.size());
    const auto place = static_cast<int>(shown - foundPages_.begin());
    if (shown == foundPages_.end())
        ShowFoundPage(onward ? 0 : count - 1);
    else
        ShowFoundPage((place + (onward ? 1 : count - 1)) % count);
    if (!onward) {
        txtPage->moveCursor(QTextCursor::End);
        FindInPage(false);
    }
}

void frmHelp::ShowFoundPage(int row) {
    if (row < 0 || static_cast<std::size_t>(row) >= foundPages_.size())
        return;
    lvwFound->setCurrentRow(row);
    const std::string& page = foundPages_[static_cast<std::size_t>(row)];
    if (txtPage->ShownPage() != page)
        txtPage->ShowPage(page);
    txtPage->moveCursor(QTextCursor::Start);
    FindInPage(true);
}

// ---- in front of other windows

bool frmHelp::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked)
        emit Blocked();
    return QWidget::event(event);
}

/// Makes the help window a child of the open modal dialog, because such a dialog blocks all windows except
/// its children.  Without such a dialog, makes it a child of the owner.
void frmHelp::StayInFront() {
    const QWidget* const owner = find(owner_);
    QWindow* const dialog = QGuiApplication::modalWindow();
    QWindow* const front = dialog != nullptr ? dialog : owner != nullptr ? owner->windowHandle() : nullptr;
    if (windowHandle() == nullptr || front == windowHandle())
        return;
    windowHandle()->setTransientParent(front);
    if (dialog != nullptr) {
        connect(dialog, &QWindow::visibleChanged, this, &frmHelp::StayInFront,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
        connect(dialog, &QObject::destroyed, this, &frmHelp::StayInFront,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
    }
}

}  // namespace tallyhorn
