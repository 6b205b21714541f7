#include "views/forms/MessageListView.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>
#include <utility>

#include "ui/AnsiString.h"
#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

constexpr int CellMargin = 4;
constexpr int RowMargin = 4;
/// So many cells are kept laid out a column; a screen shows some dozens.
constexpr std::size_t CellTextsKept = 1000;
/// No cell shows more of its text, however long a sender made it.
constexpr std::size_t CellTextLength = 1000;

}  // namespace

MessageListView::MessageListView(MessageList& list, QWidget* parent)
    : QAbstractItemView(parent), model_(list), header_(new QHeaderView(Qt::Horizontal, this)) {
    // Before the base class hears of a reset, and forgets the current row.
    connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        rowBeforeReset_ = CurrentRow();
        slotBeforeReset_ = static_cast<Slot>(currentIndex().internalId());
    });
    setModel(&model_);
    // After the base class and its selection have forgotten it.
    connect(&model_, &QAbstractItemModel::modelReset, this, &MessageListView::RestoreCurrentRow);
    // The base class keeps the current row alone; which rows are selected is the list's own knowledge.
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerItem);
    // Else what lies behind the scroll bars is painted anew with them, frame and page.
    setAutoFillBackground(true);
    setHorizontalScrollMode(ScrollPerPixel);
    header_->setModel(&model_);
    header_->setSectionsClickable(true);
    header_->setHighlightSections(false);
    header_->setSectionResizeMode(static_cast<int>(MessageColumn::RecordNum), QHeaderView::Fixed);
    header_->resizeSection(static_cast<int>(MessageColumn::RecordNum), 0);
    connect(header_, &QHeaderView::sectionClicked, this, &MessageListView::SortBy);
    connect(header_, &QHeaderView::sectionResized, this, [this] {
        ForgetCellTexts();
        updateGeometries();
        viewport()->update();
    });
    for (QWidget* widget : {header_->viewport(), static_cast<QWidget*>(verticalScrollBar()),
                            static_cast<QWidget*>(horizontalScrollBar())})
        widget->installEventFilter(this);
    updateGeometries();
}

void MessageListView::TakeInRows() {
    if (model_.TakeInRows())
        showNew_.Request();
}

void MessageListView::ShowNewRows() {
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
    // Rows that came since the last take-in have moved the others aside.
    const auto current = List().PositionOf(static_cast<Slot>(currentIndex().internalId()));
    if (currentIndex().isValid() && current && List().IsSelected(*current))
        return List().SlotAt(*current);
    return List().SelectedSlots().front();
}

void MessageListView::SelectRow(std::size_t position) {
    TakeInRows();
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

bool MessageListView::isIndexHidden(const QModelIndex& index) const {
    return index.column() == static_cast<int>(MessageColumn::RecordNum);
}

// ---- painting

void MessageListView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    Look look;
    look.Group = !isEnabled()                 ? QPalette::Disabled
                 : window()->isActiveWindow() ? QPalette::Active
                                              : QPalette::Inactive;
    look.RowHeight = RowHeight();
    look.IconSide = style()->pixelMetric(QStyle::PM_SmallIconSize);
    look.TextTop = (look.RowHeight - fontMetrics().height()) / 2;
    const int first = verticalScrollBar()->value();
    const int last = std::min(RowCount(), first + viewport()->height() / look.RowHeight + 1);
    for (int row = first; row < last; ++row)
        PaintRow(painter, look, row, (row - first) * look.RowHeight);
}

void MessageListView::PaintRow(QPainter& painter, const Look& look, int row, int top) {
    const bool selected = List().IsSelected(static_cast<std::size_t>(row));
    const QRect line(-header_->offset(), top, header_->length(), look.RowHeight);
    if (selected)
        painter.fillRect(line, palette().brush(look.Group, QPalette::Highlight));
    painter.setPen(palette().color(look.Group, selected ? QPalette::HighlightedText : QPalette::Text));
    for (int column = 0; column < SizedColumnCount; ++column)
        PaintCell(painter, look, row, column, top);
    if (hasFocus() && row == CurrentRow())
        PaintFocus(painter, line, selected);
}

void MessageListView::PaintCell(QPainter& painter, const Look& look, int row, int column, int top) {
    const auto position = static_cast<std::size_t>(row);
    const int width = header_->sectionSize(column);
    const int left = header_->sectionViewportPosition(column);
    int indent = CellMargin;
    if (column == static_cast<int>(MessageColumn::DateLogged)) {
        const QRect place(left + CellMargin, top + (look.RowHeight - look.IconSide) / 2, look.IconSide,
                          look.IconSide);
        const EventType type = List().TypeAt(position);
        if (HasPicture(type) && width > look.IconSide + CellMargin)
            icons_.at(static_cast<std::size_t>(type)).paint(&painter, place);
        indent += look.IconSide + CellMargin;
    }
    const int room = width - indent - CellMargin;
    if (room <= 0 || left > viewport()->width() || left + width < 0)
        return;
    painter.drawStaticText(
        left + indent, top + look.TextTop,
        CellText(column, room, List().CellText(position, static_cast<MessageColumn>(column))));
}

void MessageListView::PaintFocus(QPainter& painter, const QRect& line, bool selected) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = line.intersected(viewport()->rect());
    option.state |= QStyle::State_KeyboardFocusChange;
    option.backgroundColor = palette().color(selected ? QPalette::Highlight : QPalette::Base);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

/// Laying a text out costs more than painting it, and most cells stay or come back: it is done once a text.
const QStaticText& MessageListView::CellText(int column, int width, std::string text) {
    CellTexts& known = cellTexts_.at(static_cast<std::size_t>(column));
    if (const auto found = known.find(text); found != known.end())
        return found->second;
    if (known.size() >= CellTextsKept)
        known.clear();
    const QString line = ToVisibleLine(std::string_view(text).substr(0, CellTextLength));
    QStaticText laidOut(fontMetrics().elidedText(line, Qt::ElideRight, width));
    laidOut.setTextFormat(Qt::PlainText);
    laidOut.setPerformanceHint(QStaticText::AggressiveCaching);
    laidOut.prepare({}, font());
    return known.emplace(std::move(text), std::move(laidOut)).first->second;
}

void MessageListView::ForgetCellTexts() {
    for (CellTexts& texts : cellTexts_)
        texts.clear();
}

// ---- the user's hand

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
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier) {
        const auto position = static_cast<std::size_t>(index.row());
        List().Select(position, position, !List().IsSelected(position));
    }
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
        // The header has taken its new widths only after it has seen the release itself.
        if (watched == header_->viewport())
            QMetaObject::invokeMethod(this, &MessageListView::MouseReleased, Qt::QueuedConnection);
    }
    return QAbstractItemView::eventFilter(watched, event);
}

void MessageListView::keyPressEvent(QKeyEvent* event) {
    emit Touched();
    const int page = RowsInView() - 1;
    const int current = std::max(CurrentRow(), 0);
    const int last = RowCount() - 1;
    switch (event->key()) {
        case Qt::Key_Up:
            return MoveTo(current - 1, event->modifiers());
        case Qt::Key_Down:
            return MoveTo(CurrentRow() + 1, event->modifiers());
        case Qt::Key_PageUp:
            return MoveTo(current - page, event->modifiers());
        case Qt::Key_PageDown:
            return MoveTo(current + page, event->modifiers());
        case Qt::Key_Home:
            return MoveTo(0, event->modifiers());
        case Qt::Key_End:
            return MoveTo(last, event->modifiers());
        case Qt::Key_Delete:
            if (!event->isAutoRepeat())
                emit DeleteRequested();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            emit Opened();
            return;
        default:
            break;
    }
    // What a click on a column's header does.
    const int column = event->key() - Qt::Key_1;
    if (column >= 0 && column < SizedColumnCount && event->modifiers() == Qt::ControlModifier)
        return SortBy(column);
    if (event->matches(QKeySequence::SelectAll))
        return selectAll();
    if (event->key() == Qt::Key_Space && CurrentRow() >= 0) {
        const auto position = static_cast<std::size_t>(CurrentRow());
        const bool toggles = (event->modifiers() & Qt::ControlModifier) != 0;
        List().Select(position, position, !toggles || !List().IsSelected(position));
        viewport()->update();
        return;
    }
    const bool types = !event->text().isEmpty() && event->text().at(0).isPrint() &&
                       (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (types)
        keyboardSearch(event->text());
    else
        event->ignore();
}

/// Letters typed quickly one after the other count as one text.
void MessageListView::keyboardSearch(const QString& search) {
    const bool goesOn =
        searchTime_.isValid() && searchTime_.elapsed() < QApplication::keyboardInputInterval();
    searchTime_.start();
    searchText_ = goesOn ? searchText_ + search : search;
    // A new search begins behind the current row, so that the same letter goes from hit to hit.
    const int start = std::max(CurrentRow(), 0) + (goesOn || CurrentRow() < 0 ? 0 : 1);
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

/// The base class shows the first rows after a reset; the list stays where it was.
void MessageListView::reset() {
    const int top = verticalScrollBar()->value();
    QAbstractItemView::reset();
    updateGeometries();
    verticalScrollBar()->setValue(top);
}

/// After rows have gone or been sorted, the current row is where its message is now, or where it was.
void MessageListView::RestoreCurrentRow() {
    if (rowBeforeReset_ >= 0 && RowCount() > 0) {
        const std::optional<std::size_t> position = List().PositionOf(slotBeforeReset_);
        SetCurrentRow(position ? static_cast<int>(*position) : std::min(rowBeforeReset_, RowCount() - 1));
        scrollTo(currentIndex());
        // A range must not begin at a row that is gone.
        if (!anchor_ || !List().PositionOf(*anchor_))
            anchor_ = List().SlotAt(static_cast<std::size_t>(CurrentRow()));
    }
    viewport()->update();
}

/// A release that goes elsewhere must not leave the list held for good.
bool MessageListView::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide)
        heldByMouse_ = false;
    return QAbstractItemView::event(event);
}

void MessageListView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        ForgetCellTexts();
    if (event->type() == QEvent::EnabledChange)
        viewport()->setBackgroundRole(isEnabled() ? QPalette::Base : QPalette::Button);
    QAbstractItemView::changeEvent(event);
}

// ---- what the base class would select with, and the list does instead

QModelIndex MessageListView::moveCursor(CursorAction /*action*/, Qt::KeyboardModifiers /*modifiers*/) {
    return currentIndex();
}

void MessageListView::setSelection(const QRect& /*rect*/, QItemSelectionModel::SelectionFlags /*command*/) {}

QRegion MessageListView::visualRegionForSelection(const QItemSelection& /*selection*/) const {
    return {};
}

}  // namespace tallyhorn
