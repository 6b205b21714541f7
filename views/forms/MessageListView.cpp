#include "views/forms/MessageListView.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>

#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

constexpr int RowMargin = 4;

}  // namespace

MessageListView::MessageListView(MessageList& list, QWidget* parent)
    : QAbstractItemView(parent),
      model_(list),
      header_(new QHeaderView(Qt::Horizontal, this)),
      painter_(*this, *header_, list) {
    // Connected before setModel, so that it runs before the base class resets the current row.
    connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        rowBeforeReset_ = CurrentRow();
        slotBeforeReset_ = static_cast<Slot>(currentIndex().internalId());
    });
    setModel(&model_);
    // Connected last, so that it runs after the base class and the selection model have reset the current
    // row.
    connect(&model_, &QAbstractItemModel::modelReset, this, &MessageListView::RestoreCurrentRow);
    // The base class keeps only the current row; MessageList keeps which rows are selected.
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerItem);
    // Otherwise every repaint of a scroll bar also repaints the group box and the page behind it.
    setAutoFillBackground(true);
    setHorizontalScrollMode(ScrollPerPixel);
    header_->setModel(&model_);
    header_->setSectionsClickable(true);
    header_->setHighlightSections(false);
    header_->setSectionResizeMode(static_cast<int>(MessageColumn::RecordNum), QHeaderView::Fixed);
    header_->resizeSection(static_cast<int>(MessageColumn::RecordNum), 0);
    connect(header_, &QHeaderView::sectionClicked, this, &MessageListView::SortBy);
    connect(header_, &QHeaderView::sectionResized, this, [this] {
        painter_.ForgetLaidOutTexts();
        updateGeometries();
        viewport()->update();
    });
    for (QWidget* widget : {header_->viewport(), static_cast<QWidget*>(verticalScrollBar()),
                            static_cast<QWidget*>(horizontalScrollBar())})
        widget->installEventFilter(this);
    updateGeometries();
}

void MessageListView::ShowNewRows() {
    if (model_.AnnounceNewRows())
        repaint_.Request();
}

void MessageListView::RepaintNewRows() {
    updateGeometries();
    viewport()->update();
    if (IsHeld())
        return;
    if (const std::optional<std::size_t> newest = List().NewestPosition())
        scrollTo(model_.index(static_cast<int>(*newest), 0));
}

int MessageListView::ColumnWidth(int column) const {
    return header_->sectionSize(column);
}

void MessageListView::SetColumnWidth(int column, int width) {
    header_->resizeSection(column, width);
}

std::optional<Slot> MessageListView::SelectedSlot() const {
    if (List().SelectedCount() == 0)
        return std::nullopt;
    // The index's row number may be out of date: the list has rows that the model has not announced yet.
    const auto current = List().PositionOf(static_cast<Slot>(currentIndex().internalId()));
    if (currentIndex().isValid() && current && List().IsSelected(*current))
        return List().SlotAt(*current);
    return List().SelectedSlots().front();
}

void MessageListView::SelectRow(std::size_t position) {
    ShowNewRows();
    MoveTo(static_cast<int>(position), Qt::NoModifier);
}

QRect MessageListView::CurrentRowOnScreen() const {
    QRect row = visualRect(currentIndex());
    row.setRight(viewport()->width());
    row &= viewport()->rect();
    return isVisible() && !row.isEmpty() ? QRect(viewport()->mapToGlobal(row.topLeft()), row.size())
                                         : QRect();
}

// ---- geometry

int MessageListView::RowHeight() const {
    return std::max(fontMetrics().height(), style()->pixelMetric(QStyle::PM_SmallIconSize)) + RowMargin;
}

int MessageListView::RowsInView() const {
    return std::max(1, viewport()->height() / RowHeight());
}

int MessageListView::NearestRow(int y) const {
    const int row = verticalScrollBar()->value() + (y < 0 ? -1 : y / RowHeight());
    return std::clamp(row, std::min(0, RowCount() - 1), RowCount() - 1);
}

QRect MessageListView::visualRect(const QModelIndex& index) const {
    if (!index.isValid())
        return {};
    return {header_->sectionViewportPosition(index.column()),
            (index.row() - verticalScrollBar()->value()) * RowHeight(), header_->sectionSize(index.column()),
            RowHeight()};
}

QModelIndex MessageListView::indexAt(const QPoint& point) const {
    if (point.y() < 0)
        return {};
    const int row = verticalScrollBar()->value() + point.y() / RowHeight();
    const int column = header_->logicalIndexAt(point.x());
    return row < RowCount() && column >= 0 ? model_.index(row, column) : QModelIndex();
}

void MessageListView::scrollTo(const QModelIndex& index, ScrollHint /*hint*/) {
    if (!index.isValid())
        return;
    QScrollBar* const bar = verticalScrollBar();
    if (index.row() < bar->value())
        bar->setValue(index.row());
    else if (index.row() >= bar->value() + RowsInView())
        bar->setValue(index.row() - RowsInView() + 1);
}

void MessageListView::updateGeometries() {
    const int headerHeight = header_->sizeHint().height();
    setViewportMargins(0, headerHeight, 0, 0);
    const QRect view = viewport()->geometry();
    header_->setGeometry(view.left(), view.top() - headerHeight, view.width(), headerHeight);
    verticalScrollBar()->setPageStep(RowsInView());
    verticalScrollBar()->setSingleStep(1);
    verticalScrollBar()->setRange(0, std::max(0, RowCount() - RowsInView()));
    horizontalScrollBar()->setPageStep(view.width());
    horizontalScrollBar()->setSingleStep(fontMetrics().averageCharWidth() * 4);
    horizontalScrollBar()->setRange(0, std::max(0, header_->length() - view.width()));
    QAbstractItemView::updateGeometries();
}

void MessageListView::scrollContentsBy(int dx, int /*dy*/) {
    if (dx != 0)
        header_->setOffset(horizontalScrollBar()->value());
    viewport()->update();
}

int MessageListView::horizontalOffset() const {
    return header_->offset();
}

int MessageListView::verticalOffset() const {
    return verticalScrollBar()->value() * RowHeight();
}

// ---- painting

void MessageListView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    painter_.Begin(RowHeight());
    const int first = verticalScrollBar()->value();
    const int last = std::min(RowCount(), first + viewport()->height() / RowHeight() + 1);
    for (int row = first; row < last; ++row)
        painter_.PaintRow(painter, row, (row - first) * RowHeight(), hasFocus() && row == CurrentRow());
}

// ---- mouse and keyboard

bool MessageListView::IsHeld() const {
    return heldByMouse_ || verticalScrollBar()->isSliderDown();
}

void MessageListView::mousePressEvent(QMouseEvent* event) {
    heldByMouse_ = true;
    emit Touched();
    const QModelIndex index = indexAt(event->position().toPoint());
    if (!index.isValid()) {
        if ((event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) == 0)
            List().ClearSelection();
        viewport()->update();
        return;
    }
    const bool keepsSelection =
        event->button() == Qt::RightButton && List().IsSelected(static_cast<std::size_t>(index.row()));
    if (keepsSelection)
        SetCurrentRow(index.row());
    else
        MoveTo(index.row(), event->modifiers());
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier)
        SelectCurrentRow(true);
}

void MessageListView::mouseMoveEvent(QMouseEvent* event) {
    const int row = NearestRow(event->position().toPoint().y());
    if ((event->buttons() & Qt::LeftButton) == 0 || row < 0 || row == CurrentRow() || !anchor_)
        return;
    ExtendTo(row, (event->modifiers() & Qt::ControlModifier) != 0);
    scrollTo(model_.index(row, 0));
}

void MessageListView::mouseReleaseEvent(QMouseEvent* event) {
    heldByMouse_ = event->buttons() != Qt::NoButton;
    emit MouseReleased();
}

void MessageListView::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid())
        emit Opened();
}

bool MessageListView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress)
        heldByMouse_ = true;
    if (event->type() == QEvent::MouseButtonRelease) {
        heldByMouse_ = static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton;
        // The call is queued, because this filter runs before the header handles the release and sets its
        // widths.
        if (watched == header_->viewport())
            QMetaObject::invokeMethod(this, &MessageListView::MouseReleased, Qt::QueuedConnection);
    }
    return QAbstractItemView::eventFilter(watched, event);
}

/// Returns the row to which a movement key leads, before it is clamped to the list; nothing for other keys.
std::optional<int> MessageListView::RowOfKey(int key) const {
    const int page = RowsInView() - 1;
    switch (key) {
        case Qt::Key_Up:
            return CurrentRow() - 1;
        case Qt::Key_Down:
            return CurrentRow() + 1;
        case Qt::Key_PageUp:
            return CurrentRow() - page;
        case Qt::Key_PageDown:
            return std::max(CurrentRow(), 0) + page;
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return RowCount() - 1;
        default:
            return std::nullopt;
    }
}

void MessageListView::keyPressEvent(QKeyEvent* event) {
    emit Touched();
    const int key = event->key();
    if (const std::optional<int> row = RowOfKey(key))
        return MoveTo(*row, event->modifiers());
    const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
    const bool alt = (event->modifiers() & Qt::AltModifier) != 0;
    // Ctrl+1 to Ctrl+5 do what a click on that column's header does.
    const int column = key - Qt::Key_1;
    if (column >= 0 && column < SizedColumnCount && event->modifiers() == Qt::ControlModifier)
        SortBy(column);
    else if (key == Qt::Key_Delete && event->isAutoRepeat())
        return;
    else if (key == Qt::Key_Delete)
        emit DeleteRequested();
    else if (key == Qt::Key_Return || key == Qt::Key_Enter)
        emit Opened();
    else if (event->matches(QKeySequence::SelectAll))
        selectAll();
    else if (key == Qt::Key_Space && CurrentRow() >= 0)
        SelectCurrentRow(control);
    else if (!control && !alt && !event->text().isEmpty() && event->text().at(0).isPrint())
        keyboardSearch(event->text());
    else
        event->ignore();
}

/// Selects the current row, or deselects it if it is selected and `toggles` is set.
void MessageListView::SelectCurrentRow(bool toggles) {
    const auto position = static_cast<std::size_t>(CurrentRow());
    List().Select(position, position, !toggles || !List().IsSelected(position));
    viewport()->update();
}

/// Searches the first column for what was typed: characters typed within the keyboard input interval of each
/// other form one text.
void MessageListView::keyboardSearch(const QString& search) {
    const bool continues =
        searchTime_.isValid() && searchTime_.elapsed() < QApplication::keyboardInputInterval();
    searchTime_.start();
    searchText_ = continues ? searchText_ + search : search;
    // A new search starts after the current row, so that typing the same letter again finds the next match.
    const int start = std::max(CurrentRow(), 0) + (continues || CurrentRow() < 0 ? 0 : 1);
    if (const auto found = List().FindByDate(FromQString(searchText_), static_cast<std::size_t>(start)))
        MoveTo(static_cast<int>(*found), Qt::NoModifier);
}

void MessageListView::MoveTo(int row, Qt::KeyboardModifiers modifiers) {
    if (RowCount() == 0)
        return;
    row = std::clamp(row, 0, RowCount() - 1);
    if ((modifiers & Qt::ShiftModifier) != 0)
        ExtendTo(row, (modifiers & Qt::ControlModifier) != 0);
    else if ((modifiers & Qt::ControlModifier) == 0)
        SelectOnly(row, row);
    SetCurrentRow(row);
    if ((modifiers & Qt::ShiftModifier) == 0)
        anchor_ = List().SlotAt(static_cast<std::size_t>(row));
    scrollTo(model_.index(row, 0));
}

void MessageListView::SelectOnly(int first, int last) {
    List().ClearSelection();
    List().Select(static_cast<std::size_t>(first), static_cast<std::size_t>(last), true);
    viewport()->update();
}

void MessageListView::ExtendTo(int row, bool keepOthers) {
    const std::optional<std::size_t> anchor = anchor_ ? List().PositionOf(*anchor_) : std::nullopt;
    const int from = anchor ? static_cast<int>(*anchor) : row;
    if (!anchor)
        anchor_ = List().SlotAt(static_cast<std::size_t>(row));
    if (!keepOthers)
        List().ClearSelection();
    List().Select(static_cast<std::size_t>(std::min(from, row)),
                  static_cast<std::size_t>(std::max(from, row)), true);
    SetCurrentRow(row);
}

void MessageListView::selectAll() {
    if (RowCount() > 0)
        SelectOnly(0, RowCount() - 1);
}

void MessageListView::SetCurrentRow(int row) {
    selectionModel()->setCurrentIndex(model_.index(row, 0), QItemSelectionModel::NoUpdate);
    viewport()->update();
}

int MessageListView::CurrentRow() const {
    return currentIndex().isValid() ? currentIndex().row() : -1;
}

void MessageListView::SortBy(int column) {
    List().SortBy(static_cast<MessageColumn>(column));
    header_->setSortIndicatorShown(true);
    header_->setSortIndicator(column, List().IsDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
}

/// Restores the scroll position, which the base class sets to the top.
void MessageListView::reset() {
    const int top = verticalScrollBar()->value();
    QAbstractItemView::reset();
    updateGeometries();
    verticalScrollBar()->setValue(top);
}

/// Makes the row of the same message current again after rows were removed or sorted, or if the message is
/// gone, the row that is now at its position.
void MessageListView::RestoreCurrentRow() {
    if (rowBeforeReset_ >= 0 && RowCount() > 0) {
        const std::optional<std::size_t> position = List().PositionOf(slotBeforeReset_);
        SetCurrentRow(position ? static_cast<int>(*position) : std::min(rowBeforeReset_, RowCount() - 1));
        scrollTo(currentIndex());
        // A range selected with Shift must not begin at a removed row.
        if (!anchor_ || !List().PositionOf(*anchor_))
            anchor_ = List().SlotAt(static_cast<std::size_t>(CurrentRow()));
    }
    viewport()->update();
}

/// Treats the mouse buttons as released when the window loses the focus or the list is hidden, because this
/// list may then not receive the release.
bool MessageListView::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide)
        heldByMouse_ = false;
    return QAbstractItemView::event(event);
}

void MessageListView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        painter_.ForgetLaidOutTexts();
    if (event->type() == QEvent::EnabledChange)
        viewport()->setBackgroundRole(isEnabled() ? QPalette::Base : QPalette::Button);
    QAbstractItemView::changeEvent(event);
}

}  // namespace tallyhorn
