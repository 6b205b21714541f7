#pragma once

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QTimer>
#include <optional>

#include "views/forms/MessageListModel.h"
#include "views/forms/MessageRowPainter.h"
#include "views/forms/RepaintThrottle.h"
#include "views/forms/RowDrag.h"
#include "views/forms/TypeAhead.h"
#include "views/messages/RangeSelection.h"

class QHeaderView;

namespace tallyhorn {

/// Shows one message list as a table with a row per message.  All rows have the same height and the view
/// keeps nothing per row, so that its cost does not grow with their number.  MessageList stores which rows
/// are selected, because Qt's selection model stores ranges, and a scattered selection has very many of them.
class MessageListView final : public QAbstractItemView {
    Q_OBJECT

public:
    explicit MessageListView(MessageList& list, QWidget* parent = nullptr);

    /// Announces the rows that were added to the list.  As often as the throttle allows, repaints and scrolls
    /// to the newest row.  Scrolls later while the user holds a mouse button or the scroll bar, or pressed a
    /// button so recently that a double click may follow.
    void ShowNewRows();

    /// Returns the slot of the current row if that row is selected, otherwise of the first selected row.
    std::optional<Slot> SelectedSlot() const;
    /// Makes the row current, selects it alone and scrolls to it.
    void SelectRow(std::size_t position);
    /// Returns the part of the current row that is visible, in screen coordinates; empty if there is none.
    QRect CurrentRowOnScreen() const;

    /// Return and set a width in pixels.  `column` is one of the five sized columns.
    int ColumnWidth(int column) const;
    void SetColumnWidth(int column, int width);
    QHeaderView* Header() const { return header_; }

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    void selectAll() override;
    void reset() override;
    void keyboardSearch(const QString& search) override;

signals:
    /// Emitted when the user clicks or presses a key in the list.
    void Touched();
    /// Emitted when a mouse button is released over the list or its header.
    void MouseReleased();
    /// Emitted when the user presses the Delete key.
    void DeleteRequested();
    /// Emitted when the user double-clicks a row or presses Return.
    void Opened();

protected:
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override { return index.column() >= SizedColumnCount; }
    // MessageList keeps the selection; the base class must not select.
    QModelIndex moveCursor(CursorAction, Qt::KeyboardModifiers) override { return currentIndex(); }
    void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override {}
    QRegion visualRegionForSelection(const QItemSelection&) const override { return {}; }
    /// Keeps the newest row in view if it was in view before.
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MessageList& List() { return model_.List(); }
    const MessageList& List() const { return model_.List(); }
    int RowCount() const { return model_.rowCount(); }
    int RowHeight() const;
    int RowsInView() const;
    int NearestRow(int y) const;
    bool IsHeld() const;
    bool IsInView(int row) const;
    void ScrollToNewest();

    void RepaintNewRows();
    void PressRow(int row, const QMouseEvent& event);
    void DragTo(int y, bool keepOthers);
    void MoveTo(int row, Qt::KeyboardModifiers modifiers);
    void SetCurrentRow(int row);
    void SelectCurrentRow(bool toggles);
    std::optional<int> RowOfKey(int key) const;
    int CurrentRow() const;
    void RestoreCurrentRow();
    void ShowFocus();
    void SortBy(int column);

    MessageListModel model_;
    RepaintThrottle repaint_{this, [this] { RepaintNewRows(); }};
    QHeaderView* header_;
    MessageRowPainter painter_;
    RangeSelection range_{model_.List()};
    RowDrag drag_{*viewport(), [this](int y, bool withControl) { DragTo(y, withControl); }};
    TypeAhead typeAhead_;
    int rowBeforeReset_ = -1;
    Slot slotBeforeReset_ = -1;
    bool inViewBeforeReset_ = false;
    bool heldByMouse_ = false;
    QElapsedTimer sincePress_;
    QTimer timHold_;  ///< active while new rows wait for the end of a hold, to be scrolled into view
    std::optional<Slot> pressed_;  ///< the message whose row was pressed last; empty after other presses
};

}  // namespace tallyhorn
