#include "views/forms/Pictures.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <array>
#include <map>
#include <utility>

#include "views/forms/AnsiString.h"

namespace tallyhorn {
namespace {

constexpr qreal Grid = 16;  ///< the shapes below lie in a square of this side

const QColor Blue(0x1F, 0x6F, 0xC4);
const QColor Amber(0xF0, 0xA8, 0x1E);
const QColor Red(0xC9, 0x2A, 0x2A);
const QColor Green(0x2B, 0x8A, 0x3E);
const QColor Grey(0x7A, 0x82, 0x90);

using Drawing = void (*)(QPainter&);

/// Paints a drawing made for the grid at any size, faded where its control is disabled.  Curves cost more
/// than all else in a row of a list, so what was drawn once is kept for each size.
class DrawnIcon final : public QIconEngine {
public:
    explicit DrawnIcon(Drawing drawing) : drawing_(drawing) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const int side = qMin(rect.width(), rect.height());
        const QPoint corner(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->drawPixmap(corner, Drawn(side, painter->device()->devicePixelRatioF(), mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return result;
    }

    QIconEngine* clone() const override { return new DrawnIcon(drawing_); }

private:
    /// Of `side` device-independent pixels on a screen with `ratio` dots to each of them.
    const QPixmap& Drawn(int side, qreal ratio, QIcon::Mode mode) {
        const bool faded = mode == QIcon::Disabled;
        QPixmap& pixmap = drawn_[{qRound(side * ratio), faded}];
        if (!pixmap.isNull() && pixmap.devicePixelRatioF() == ratio)
            return pixmap;
        pixmap = QPixmap(qRound(side * ratio), qRound(side * ratio));
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side * ratio / Grid, side * ratio / Grid);
        if (faded)
            painter.setOpacity(0.35);
        drawing_(painter);
        painter.end();
        pixmap.setDevicePixelRatio(ratio);
        return pixmap;
    }

    const Drawing drawing_;
    std::map<std::pair<int, bool>, QPixmap> drawn_;
};

QIcon MakeIcon(Drawing drawing) {
    return QIcon(new DrawnIcon(drawing));
}

void Stroke(QPainter& painter, const QColor& colour, qreal width) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void Fill(QPainter& painter, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
}

/// A disc with an "i".
void DrawInformation(QPainter& painter) {
    Fill(painter, Blue);
    painter.drawEllipse(QRectF(1, 1, 14, 14));
    Fill(painter, Qt::white);
    painter.drawEllipse(QRectF(7, 3.6, 2, 2));
    painter.drawRoundedRect(QRectF(7.1, 6.8, 1.8, 5.6), 0.6, 0.6);
}

/// A triangle with an exclamation mark.
void DrawWarning(QPainter& painter) {
    Stroke(painter, Amber, 1.6);
    painter.setBrush(Amber);
    painter.drawPolygon(QPolygonF({{8, 2}, {14.6, 13.8}, {1.4, 13.8}}));
    Fill(painter, QColor(0x33, 0x26, 0x05));
    painter.drawRoundedRect(QRectF(7.1, 5.4, 1.8, 4.8), 0.6, 0.6);
    painter.drawEllipse(QRectF(7, 11.2, 2, 2));
}

/// An octagon with a cross.
void DrawError(QPainter& painter) {
    Fill(painter, Red);
    painter.drawPolygon(
        QPolygonF({{5.1, 1}, {10.9, 1}, {15, 5.1}, {15, 10.9}, {10.9, 15}, {5.1, 15}, {1, 10.9}, {1, 5.1}}));
    Stroke(painter, Qt::white, 1.9);
    painter.drawLine(QPointF(5.2, 5.2), QPointF(10.8, 10.8));
    painter.drawLine(QPointF(10.8, 5.2), QPointF(5.2, 10.8));
}

/// A padlock, shut for a failure and open for a success.
void DrawPadlock(QPainter& painter, const QColor& colour, bool open) {
    Stroke(painter, colour, 1.8);
    QPainterPath shackle;
    shackle.moveTo(4.2, open ? 5.4 : 7);
    shackle.lineTo(4.2, 4.8);
    shackle.arcTo(QRectF(4.2, 1, 7.6, 7.6), 180, -180);
    shackle.lineTo(11.8, 7);
    painter.drawPath(shackle);
    Fill(painter, colour);
    painter.drawRoundedRect(QRectF(1.8, 6.6, 12.4, 8.8), 1.4, 1.4);
}

void DrawFailureAudit(QPainter& painter) {
    DrawPadlock(painter, Red, false);
    Stroke(painter, Qt::white, 1.5);
    painter.drawLine(QPointF(6, 9), QPointF(10, 13));
    painter.drawLine(QPointF(10, 9), QPointF(6, 13));
}

void DrawSuccessAudit(QPainter& painter) {
    DrawPadlock(painter, Green, true);
    Stroke(painter, Qt::white, 1.5);
    painter.drawPolyline(QPolygonF({{5, 11}, {7.2, 13.1}, {11, 9}}));
}

void DrawQuestionMark(QPainter& painter) {
    Fill(painter, Grey);
    painter.drawRoundedRect(QRectF(1, 1, 14, 14), 2.5, 2.5);
    Stroke(painter, Qt::white, 1.7);
    QPainterPath hook;
    hook.moveTo(5.6, 5.9);
    hook.cubicTo(5.6, 2.6, 10.6, 2.7, 10.4, 5.9);
    hook.cubicTo(10.3, 7.6, 8, 7.7, 8, 9.6);
    painter.drawPath(hook);
    Fill(painter, Qt::white);
    painter.drawEllipse(QRectF(7, 11.2, 2, 2));
}

void DrawBell(QPainter& painter) {
    Fill(painter, Amber);
    QPainterPath bell;
    bell.moveTo(2.4, 11.8);
    bell.cubicTo(4.6, 10.2, 3.6, 3, 8, 2.4);
    bell.cubicTo(12.4, 3, 11.4, 10.2, 13.6, 11.8);
    bell.closeSubpath();
    painter.drawPath(bell);
    painter.drawEllipse(QRectF(7, 0.8, 2, 2.4));
    Fill(painter, Grey);
    painter.drawChord(QRectF(6, 10.6, 4, 4.6), 180 * 16, 180 * 16);
}

void DrawCross(QPainter& painter) {
    Stroke(painter, Red, 2.4);
    painter.drawLine(QPointF(3.5, 3.5), QPointF(12.5, 12.5));
    painter.drawLine(QPointF(12.5, 3.5), QPointF(3.5, 12.5));
}

/// A waste bin: everything goes.
void DrawBin(QPainter& painter) {
    Stroke(painter, Grey, 1.5);
    painter.drawLine(QPointF(2.5, 4), QPointF(13.5, 4));
    painter.drawPolyline(QPolygonF({{6, 4}, {6, 2}, {10, 2}, {10, 4}}));
    painter.drawPolyline(QPolygonF({{3.8, 4}, {4.6, 14.2}, {11.4, 14.2}, {12.2, 4}}));
    painter.drawLine(QPointF(6.7, 6.6), QPointF(6.9, 11.8));
    painter.drawLine(QPointF(9.3, 6.6), QPointF(9.1, 11.8));
}

void DrawPause(QPainter& painter) {
    Fill(painter, Blue);
    painter.drawRoundedRect(QRectF(3.4, 2.4, 3.4, 11.2), 0.8, 0.8);
    painter.drawRoundedRect(QRectF(9.2, 2.4, 3.4, 11.2), 0.8, 0.8);
}

void DrawResume(QPainter& painter) {
    Stroke(painter, Green, 1.4);
    painter.setBrush(Green);
    painter.drawPolygon(QPolygonF({{4.2, 2.8}, {12.8, 8}, {4.2, 13.2}}));
}

/// A horn whose sound spreads.
void DrawConsole(QPainter& painter) {
    Fill(painter, Blue);
    painter.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3, 3);
    Fill(painter, Qt::white);
    painter.drawPolygon(QPolygonF({{2.6, 6.6}, {4.6, 6.6}, {9, 3.4}, {9, 12.6}, {4.6, 9.4}, {2.6, 9.4}}));
    Stroke(painter, Qt::white, 1.3);
    painter.drawArc(QRectF(7.6, 5.4, 5.2, 5.2), -50 * 16, 100 * 16);
}

}  // namespace

QIcon EventIcon(EventPicture picture) {
    constexpr std::array<Drawing, EventPictureCount> Drawings = {
        DrawInformation, DrawWarning, DrawError, DrawFailureAudit, DrawSuccessAudit, DrawQuestionMark};
    return MakeIcon(Drawings.at(static_cast<std::size_t>(picture)));
}

std::array<QIcon, EventPictureCount> EventIcons() {
    std::array<QIcon, EventPictureCount> icons;
    for (std::size_t i = 0; i < icons.size(); ++i)
        icons.at(i) = EventIcon(static_cast<EventPicture>(i));
    return icons;
}

QString SpokenType(EventPicture picture) {
    return picture == EventPicture::QuestionMark ? QStringLiteral("Unknown type")
                                                 : ToQString(EventTypeName(picture));
}

QIcon AlarmIcon() {
    return MakeIcon(DrawBell);
}

QIcon CommandIcon(CommandPicture picture) {
    constexpr std::array<Drawing, 4> Drawings = {DrawCross, DrawBin, DrawPause, DrawResume};
    return MakeIcon(Drawings.at(static_cast<std::size_t>(picture)));
}

QIcon ConsoleIcon() {
    return MakeIcon(DrawConsole);
}

}  // namespace tallyhorn
