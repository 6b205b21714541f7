#include "views/forms/MessageListView.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

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
        inViewBeforeReset_ = IsInView(rowBeforeReset_);
        slotBeforeReset_ = static_cast<Slot>(currentIndex().internalId());
    });
    setModel(&model_);
    // Connected last, so that it runs after the base class and the selection model have reset the current
    // row.
    connect(&model_, &QAbstractItemModel::modelReset, this, &MessageListView::RestoreCurrentRow);
    // The base class stores only the current row; MessageList stores which rows are selected.
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerItem);
    // Otherwise the base class scrolls to each new current row, even if it becomes current after a deletion
    // elsewhere.
    setAutoScroll(false);
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
    timHold_.setSingleShot(true);
    timHold_.callOnTimeout(this, &MessageListView::RepaintNewRows);
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
    if (!IsHeld())
        ScrollToNewest();
    else if (!timHold_.isActive())
        timHold_.start(QApplication::doubleClickInterval());
    if (CurrentRow() < 0)
        ShowFocus();
}

void MessageListView::ScrollToNewest() {
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

/// Returns the row at `y` in the viewport, or the first or last row if none is there; -1 in an empty list.
int MessageListView::NearestRow(int y) const {
    const int row = verticalScrollBar()->value() + (y < 0 ? -1 : y / RowHeight());
    return std::clamp(row, std::min(0, RowCount() - 1), RowCount() - 1);
}

/// Goes by the page step, the number of rows that were in view at the last layout, so that updateGeometries
/// can ask about the rows in view before the size changed.
bool MessageListView::IsInView(int row) const {
    const QScrollBar* const bar = verticalScrollBar();
    return row >= bar->value() && row < bar->value() + bar->pageStep();
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
    const std::optional<std::size_t> newest = List().NewestPosition();
    const bool follows = newest && IsInView(static_cast<int>(*newest)) && !IsHeld();
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
    if (follows)
        ScrollToNewest();
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

// ---- changes of the list

/// Keeps the selected row in view, or shows the top of the new order if none is selected.
void MessageListView::SortBy(int column) {
    const std::optional<Slot> selected = SelectedSlot();
    List().SortBy(static_cast<MessageColumn>(column));
    header_->setSortIndicatorShown(true);
    header_->setSortIndicator(column, List().IsDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
    const std::size_t shown = selected ? List().PositionOf(*selected).value_or(0) : 0;
    scrollTo(model_.index(static_cast<int>(shown), 0));
    ShowFocus();
}

/// Restores the scroll position, which the base class sets to the top.
void MessageListView::reset() {
    const int top = verticalScrollBar()->value();
    QAbstractItemView::reset();
    updateGeometries();
    verticalScrollBar()->setValue(top);
}

/// Makes the row of the same message current again after rows were removed or sorted, or if the message is
/// gone, the first row behind it that is left, or the last row.
void MessageListView::RestoreCurrentRow() {
    range_.ForgetLostAnchor();
    if (rowBeforeReset_ >= 0 && RowCount() > 0) {
        const std::optional<std::size_t> before = List().CountBefore(slotBeforeReset_);
        SetCurrentRow(std::min(before ? static_cast<int>(*before) : rowBeforeReset_, RowCount() - 1));
        if (inViewBeforeReset_)
            scrollTo(currentIndex());
    }
    viewport()->update();
}

// ---- focus and other events

/// Makes the top row in view current, without selecting it, if the list has the focus and its current row is
/// not in view.
void MessageListView::ShowFocus() {
    if (hasFocus() && RowCount() > 0 && !IsInView(CurrentRow()))
        SetCurrentRow(verticalScrollBar()->value());
}

/// Keeps the current row when the user returns to the window, and before a press, which sets it.
void MessageListView::focusInEvent(QFocusEvent* event) {
    QAbstractItemView::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    const bool returns = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    if (CurrentRow() < 0 || (!returns && reason != Qt::MouseFocusReason))
        ShowFocus();
}

/// Shows a tool tip only for a cell whose text is cut.
bool MessageListView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const QModelIndex cell = indexAt(static_cast<QHelpEvent*>(event)->pos());
        const int seen = (visualRect(cell) & viewport()->rect()).width();
        if (!cell.isValid() || painter_.WidthOf(cell.row(), cell.column()) <= seen) {
            QToolTip::hideText();
            return true;
        }
    }
    return QAbstractItemView::viewportEvent(event);
}

/// Treats the mouse buttons as released when the window loses the focus or the list is hidden, because this
/// list may then not receive the release.
bool MessageListView::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide) {
        heldByMouse_ = false;
        drag_.End();
    }
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
