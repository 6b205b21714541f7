#include "views/forms/MessageRowPainter.h"

#include <QAbstractScrollArea>
#include <QHeaderView>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <utility>

#include "ui/AnsiString.h"
#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

constexpr int CellMargin = 4;
/// The most texts that are kept for one column; a screen shows only some dozens of rows.
constexpr std::size_t MostLaidOut = 1000;

}  // namespace

MessageRowPainter::MessageRowPainter(const QWidget& view, const QHeaderView& header, const MessageList& list)
    : view_(view), header_(header), list_(list), icons_(EventIcons()) {}

void MessageRowPainter::Begin(int rowHeight) {
    const bool active = view_.window()->isActiveWindow();
    colors_ = !view_.isEnabled() ? QPalette::Disabled : active ? QPalette::Active : QPalette::Inactive;
    rowHeight_ = rowHeight;
    iconSide_ = view_.style()->pixelMetric(QStyle::PM_SmallIconSize);
    textTop_ = (rowHeight - view_.fontMetrics().height()) / 2;
}

void MessageRowPainter::PaintRow(QPainter& painter, int row, int top, bool hasFocus) {
    const bool selected = list_.IsSelected(static_cast<std::size_t>(row));
    const QRect line(-header_.offset(), top, header_.length(), rowHeight_);
    if (selected)
        painter.fillRect(line, view_.palette().brush(colors_, QPalette::Highlight));
    painter.setPen(view_.palette().color(colors_, selected ? QPalette::HighlightedText : QPalette::Text));
    for (int column = 0; column < SizedColumnCount; ++column)
        PaintCell(painter, row, column, top);
    if (hasFocus)
        PaintFocus(painter, line, selected);
}

void MessageRowPainter::PaintCell(QPainter& painter, int row, int column, int top) {
    const auto position = static_cast<std::size_t>(row);
    const int width = header_.sectionSize(column);
    const int left = header_.sectionViewportPosition(column);
    if (column == static_cast<int>(MessageColumn::DateLogged)) {
        const QRect place(left + CellMargin, top + (rowHeight_ - iconSide_) / 2, iconSide_, iconSide_);
        const EventType type = list_.TypeAt(position);
        if (HasPicture(type) && width > iconSide_ + CellMargin)
            icons_.at(static_cast<std::size_t>(type)).paint(&painter, place);
    }
    const int indent = Indent(column);
    const int room = width - indent - CellMargin;
    if (room <= 0 || left > view_.width() || left + width < 0)
        return;
    painter.drawStaticText(
        left + indent, top + textTop_,
        LaidOut(column, room, list_.CellText(position, static_cast<MessageColumn>(column))));
}

/// Returns the distance of the text from the cell's left edge.
int MessageRowPainter::Indent(int column) const {
    const bool hasPicture = column == static_cast<int>(MessageColumn::DateLogged);
    return hasPicture ? CellMargin + iconSide_ + CellMargin : CellMargin;
}

int MessageRowPainter::WidthOf(int row, int column) const {
    const std::string text =
        list_.CellText(static_cast<std::size_t>(row), static_cast<MessageColumn>(column));
    return Indent(column) + view_.fontMetrics().horizontalAdvance(ToShownLine(text)) + CellMargin;
}

void MessageRowPainter::PaintFocus(QPainter& painter, const QRect& line, bool selected) {
    QStyleOptionFocusRect option;
    option.initFrom(&view_);
    option.rect = line.intersected(painter.viewport());
    option.state |= QStyle::State_KeyboardFocusChange;
    option.backgroundColor = view_.palette().color(selected ? QPalette::Highlight : QPalette::Base);
    view_.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, &view_);
}

const QStaticText& MessageRowPainter::LaidOut(int column, int width, std::string text) {
    LaidOutTexts& known = laidOut_.at(static_cast<std::size_t>(column));
    if (const auto found = known.find(text); found != known.end())
        return found->second;
    if (known.size() >= MostLaidOut)
        known.clear();
    QStaticText laidOut(view_.fontMetrics().elidedText(ToShownLine(text), Qt::ElideRight, width));
    laidOut.setTextFormat(Qt::PlainText);
    laidOut.setPerformanceHint(QStaticText::AggressiveCaching);
    laidOut.prepare({}, view_.font());
    return known.emplace(std::move(text), std::move(laidOut)).first->second;
}

void MessageRowPainter::ForgetLaidOutTexts() {
    for (LaidOutTexts& texts : laidOut_)
        texts.clear();
}

}  // namespace tallyhorn
