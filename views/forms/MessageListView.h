#pragma once

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QIcon>
#include <QStaticText>
#include <array>
#include <optional>
#include <string>
#include <unordered_map>

#include "records/SeededHash.h"
#include "ui/Pictures.h"
#include "views/forms/MessageListModel.h"
#include "views/forms/Pacer.h"
#include "views/messages/MessageList.h"

class QHeaderView;

namespace tallyhorn {

/// Shows one message list as a report with a row a message.  Every row is as high as the others and no row
/// has anything of its own here, so that a million cost what ten do; which rows are selected is kept in the
/// list, where a selection of any shape survives sorting and arrivals.  User-interface thread only.
class MessageListView final : public QAbstractItemView {
    Q_OBJECT

public:
    explicit MessageListView(MessageList& list, QWidget* parent = nullptr);

    /// Takes in the rows that came and, at once or very soon, scrolls the newest into view, unless the user
    /// is holding on to the list.
    void TakeInRows();

    /// The current row where it is selected, else the first selected one.
    std::optional<Slot> SelectedSlot() const;
    /// Makes the row the current and the only selected one and scrolls it into view.
    void SelectRow(std::size_t position);
    /// Where the current row stands on the screen; empty where it is out of sight.
    QRect CurrentRowOnScreen() const;

    /// In pixels, of the sized columns.
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
    /// The user has clicked or pressed a key in the list.
    void Touched();
    /// A mouse button was let go over the list or its header.
    void MouseReleased();
    /// The Delete key.
    void DeleteRequested();
    /// A double click on a row, or the Return key.
    void Opened();

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using CellTexts = std::unordered_map<std::string, QStaticText, SeededHash, std::equal_to<>>;

    MessageList& List() { return model_.List(); }
    const MessageList& List() const { return model_.List(); }
    int RowCount() const { return model_.rowCount(); }
    int RowHeight() const;
    int RowsInView() const;
    /// The row under a point, clamped to the ends of the list; -1 in an empty one.
    int NearestRow(int y) const;
    bool IsHeld() const;

    /// What is the same for every row of one painting.
    struct Look {
        QPalette::ColorGroup Group = QPalette::Active;
        int RowHeight = 0;
        int IconSide = 0;
        int TextTop = 0;
    };
    void PaintRow(QPainter& painter, const Look& look, int row, int top);
    void PaintCell(QPainter& painter, const Look& look, int row, int column, int top);
    void PaintFocus(QPainter& painter, const QRect& line, bool selected);
    const QStaticText& CellText(int column, int width, std::string text);
    void ForgetCellTexts();

    void ShowNewRows();
    void MoveTo(int row, Qt::KeyboardModifiers modifiers);
    void SelectOnly(int first, int last);
    void ExtendTo(int row, bool keepOthers);
    void SetCurrentRow(int row);
    int CurrentRow() const;
    void RestoreCurrentRow();
    void SortBy(int column);

    MessageListModel model_;
    Pacer showNew_{this, [this] { ShowNewRows(); }};
    QHeaderView* header_;
    std::array<CellTexts, MessageColumnCount> cellTexts_;
    std::array<QIcon, EventPictureCount> icons_ = EventIcons();
    std::optional<Slot> anchor_;  ///< where the range of the Shift key begins
    int rowBeforeReset_ = -1;
    Slot slotBeforeReset_ = -1;
    bool heldByMouse_ = false;
    QString searchText_;
    QElapsedTimer searchTime_;
};

}  // namespace tallyhorn
