// What MessageListView does with the mouse and the keyboard.

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "ui/AnsiString.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {

bool MessageListView::IsHeld() const {
    const bool mayBeDoubleClick =
        sincePress_.isValid() && sincePress_.elapsed() < QApplication::doubleClickInterval();
    return heldByMouse_ || mayBeDoubleClick || verticalScrollBar()->isSliderDown();
}

void MessageListView::mousePressEvent(QMouseEvent* event) {
    heldByMouse_ = true;
    sincePress_.start();
    emit Touched();
    const QModelIndex index = indexAt(event->position().toPoint());
    drag_.Press(*event, index.isValid());
    pressed_.reset();
    if (index.isValid()) {
        pressed_ = List().SlotAt(static_cast<std::size_t>(index.row()));
        PressRow(index.row(), *event);
    } else if ((event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) == 0) {
        List().ClearSelection();
    }
    viewport()->update();
}

void MessageListView::PressRow(int row, const QMouseEvent& event) {
    if (event.button() == Qt::RightButton && List().IsSelected(static_cast<std::size_t>(row)))
        SetCurrentRow(row);
    else
        MoveTo(row, event.modifiers());
    if (event.button() == Qt::LeftButton && event.modifiers() == Qt::ControlModifier)
        SelectCurrentRow(true);
}

void MessageListView::mouseMoveEvent(QMouseEvent* event) {
    drag_.Move(*event);
}

void MessageListView::DragTo(int y, bool keepOthers) {
    const int row = NearestRow(y);
    if (row < 0 || row == CurrentRow() || !range_.HasAnchor())
        return;
    range_.ExtendTo(static_cast<std::size_t>(row), keepOthers);
    SetCurrentRow(row);
    scrollTo(model_.index(row, 0));
}

void MessageListView::mouseReleaseEvent(QMouseEvent* event) {
    heldByMouse_ = event->buttons() != Qt::NoButton;
    drag_.End();
    emit MouseReleased();
}

/// Opens the row of the first press, although arrivals may have moved another one under the mouse since then.
void MessageListView::mouseDoubleClickEvent(QMouseEvent* event) {
    ShowNewRows();
    const auto row = pressed_ ? List().PositionOf(*pressed_) : std::nullopt;
    if (event->button() != Qt::LeftButton || !row) {
        mousePressEvent(event);
        return;
    }
    heldByMouse_ = true;
    emit Touched();
    PressRow(static_cast<int>(*row), *event);
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
    if (!range_.HasAnchor() && CurrentRow() >= 0)
        range_.SetAnchor(static_cast<std::size_t>(CurrentRow()));
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
    else if (key == Qt::Key_Space && CurrentRow() >= 0 && (control || !typeAhead_.IsGoingOn()))
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

/// Searches the first column for what was typed.
void MessageListView::keyboardSearch(const QString& search) {
    const bool continues = typeAhead_.IsGoingOn();
    const std::string text = FromQString(typeAhead_.Add(search));
    // A new search starts after the current row, so that typing the same letter again finds the next match.
    const int start = std::max(CurrentRow(), 0) + (continues || CurrentRow() < 0 ? 0 : 1);
    if (const auto found = List().FindByDate(text, static_cast<std::size_t>(start)))
        MoveTo(static_cast<int>(*found), Qt::NoModifier);
}

void MessageListView::MoveTo(int row, Qt::KeyboardModifiers modifiers) {
    if (RowCount() == 0)
        return;
    row = std::clamp(row, 0, RowCount() - 1);
    const auto position = static_cast<std::size_t>(row);
    if ((modifiers & Qt::ShiftModifier) != 0)
        range_.ExtendTo(position, (modifiers & Qt::ControlModifier) != 0);
    else if ((modifiers & Qt::ControlModifier) == 0)
        range_.SelectOnly(position, position);
    SetCurrentRow(row);
    if ((modifiers & Qt::ShiftModifier) == 0)
        range_.SetAnchor(position);
    scrollTo(model_.index(row, 0));
}

void MessageListView::selectAll() {
    if (RowCount() > 0)
        range_.SelectOnly(0, static_cast<std::size_t>(RowCount()) - 1);
    viewport()->update();
}

void MessageListView::SetCurrentRow(int row) {
    selectionModel()->setCurrentIndex(model_.index(row, 0), QItemSelectionModel::NoUpdate);
    viewport()->update();
}

int MessageListView::CurrentRow() const {
    return currentIndex().isValid() ? currentIndex().row() : -1;
}

}  // namespace tallyhorn
