#pragma once

#include <QIcon>
#include <QPalette>
#include <QStaticText>
#include <array>
#include <string>
#include <unordered_map>

#include "records/EventTypes.h"
#include "records/SeededHash.h"
#include "views/messages/MessageColumn.h"
#include "views/messages/MessageList.h"

class QHeaderView;
class QPainter;
class QRect;
class QWidget;

namespace tallyhorn {

/// Draws the rows of one list view.  Owns the laid-out texts of recent cells: laying a text out costs more
/// than drawing it, and most cells are drawn again at the next repaint.
class MessageRowPainter {
public:
    /// The arguments must outlive the painter.  `header` determines the columns' positions and widths.
    MessageRowPainter(const QWidget& view, const QHeaderView& header, const MessageList& list);

    /// Reads colours and sizes from the view; called before the rows of each repaint.
    void Begin(int rowHeight);
    /// Draws the row at that position of the list, `top` pixels below the top of the viewport.
    void PaintRow(QPainter& painter, int row, int top, bool hasFocus);
    /// Returns the width that the cell needs to show its whole text.
    int WidthOf(int row, int column) const;
    /// To be called when the view's font or a column's width changes.
    void ForgetLaidOutTexts();

private:
    using LaidOutTexts = std::unordered_map<std::string, QStaticText, SeededHash, std::equal_to<>>;

    int Indent(int column) const;
    void PaintCell(QPainter& painter, int row, int column, int top);
    void PaintFocus(QPainter& painter, const QRect& line, bool selected);
    const QStaticText& LaidOut(int column, int width, std::string text);

    const QWidget& view_;
    const QHeaderView& header_;
    const MessageList& list_;
    std::array<QIcon, EventPictureCount> icons_;
    std::array<LaidOutTexts, MessageColumnCount> laidOut_;  ///< a map per column, because the widths differ
    QPalette::ColorGroup colors_ = QPalette::Active;
    int rowHeight_ = 0;
    int iconSide_ = 0;
    int textTop_ = 0;  ///< the distance of the text from the row's top
};

}  // namespace tallyhorn
