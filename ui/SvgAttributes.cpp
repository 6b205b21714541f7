#include "ui/SvgAttributes.h"

#include <QColor>
#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamAttributes>
#include <algorithm>

namespace tallyhorn {
namespace {

constexpr qreal MiterLimit = 4;  ///< the default of SVG

bool IsNumber(const QString& text) {
    static const QRegularExpression Form(QStringLiteral("^-?[0-9]+([.][0-9]+)?\\z"));
    return Form.match(text).hasMatch();
}

bool IsColour(const QString& text) {
    static const QRegularExpression Form(QStringLiteral("^#[0-9a-f]{6}\\z"));
    return Form.match(text).hasMatch();
}

QStringList Words(QString text) {
    return text.replace(QLatin1Char(','), QLatin1Char(' ')).simplified().split(QLatin1Char(' '));
}

}  // namespace

SvgAttributes::SvgAttributes(const QXmlStreamAttributes& attributes) {
    for (const QXmlStreamAttribute& attribute : attributes) {
        Require(attribute.namespaceUri().isEmpty());
        left_.insert(attribute.name().toString(), attribute.value().toString());
    }
}

QPainterPath SvgAttributes::TakeOutline(const QString& element) {
    QPainterPath outline;
    // WindingFill corresponds to "nonzero", the default fill rule of SVG.
    outline.setFillRule(Qt::WindingFill);
    if (element == QLatin1String("path")) {
        outline.addPath(TakePath());
    } else if (element == QLatin1String("rect")) {
        outline.addPath(TakeRectangle());
    } else if (element == QLatin1String("circle")) {
        const QPointF centre(TakeNumber("cx"), TakeNumber("cy"));
        const qreal radius = TakePositive("r");
        outline.addEllipse(centre, radius, radius);
    } else if (element == QLatin1String("line")) {
        outline.moveTo(TakeNumber("x1"), TakeNumber("y1"));
        outline.lineTo(TakeNumber("x2"), TakeNumber("y2"));
    } else if (element == QLatin1String("polyline") || element == QLatin1String("polygon")) {
        outline.addPolygon(TakePoints());
        if (element == QLatin1String("polygon"))
            outline.closeSubpath();
    }
    return outline;
}

QBrush SvgAttributes::TakeFill() {
    const QString fill = Has("fill") ? Take("fill") : QStringLiteral("#000000");
    return fill == QLatin1String("none") ? QBrush(Qt::NoBrush) : QBrush(Colour(fill));
}

/// If there is no attribute "stroke", takes nothing; attributes such as stroke-width are then left over and
/// make the file unsupported.
QPen SvgAttributes::TakeStroke() {
    if (!Has("stroke"))
        return QPen(Qt::NoPen);
    const QColor colour = Colour(Take("stroke"));
    const qreal width = Has("stroke-width") ? TakePositive("stroke-width") : 1;
    constexpr Qt::PenCapStyle Caps[] = {Qt::FlatCap, Qt::RoundCap, Qt::SquareCap};
    constexpr Qt::PenJoinStyle Joins[] = {Qt::SvgMiterJoin, Qt::RoundJoin, Qt::BevelJoin};
    const int cap = TakeWord("stroke-linecap", {"butt", "round", "square"});
    const int join = TakeWord("stroke-linejoin", {"miter", "round", "bevel"});
    QPen pen(colour, width, Qt::SolidLine, Caps[cap], Joins[join]);
    pen.setMiterLimit(MiterLimit);
    return pen;
}

QString SvgAttributes::Take(const char* name) {
    Require(Has(name));
    return left_.take(QString::fromLatin1(name));
}

qreal SvgAttributes::TakePositive(const char* name) {
    const qreal number = TakeNumber(name);
    Require(number > 0);
    return number;
}

QPolygonF SvgAttributes::TakePoints() {
    const QStringList numbers = Words(Take("points"));
    constexpr qsizetype Least = 4;  ///< two points of two numbers each
    Require(numbers.size() >= Least && numbers.size() % 2 == 0);
    QPolygonF points;
    for (qsizetype i = 1; i < numbers.size(); i += 2)
        points.append(QPointF(Number(numbers[i - 1]), Number(numbers[i])));
    return points;
}

QPainterPath SvgAttributes::TakePath() {
    QPainterPath path;
    QStringList words = Words(Take("d"));
    const auto next = [&] { return words.isEmpty() ? Number(QString()) : Number(words.takeFirst()); };
    const auto point = [&] {
        const qreal x = next();
        return QPointF(x, next());
    };
    Require(words.first() == QLatin1String("M"));
    while (understood_ && !words.isEmpty()) {
        const QString command = words.takeFirst();
        if (command == QLatin1String("M")) {
            path.moveTo(point());
        } else if (command == QLatin1String("L")) {
            path.lineTo(point());
        } else if (command == QLatin1String("H")) {
            path.lineTo(next(), path.currentPosition().y());
        } else if (command == QLatin1String("V")) {
            path.lineTo(path.currentPosition().x(), next());
        } else if (command == QLatin1String("C")) {
            const QPointF first = point();
            const QPointF second = point();
            path.cubicTo(first, second, point());
        } else {
            Require(command == QLatin1String("Z"));
            path.closeSubpath();
        }
    }
    return path;
}

QPainterPath SvgAttributes::TakeRectangle() {
    const QPointF corner(TakeNumber("x"), TakeNumber("y"));
    const qreal width = TakePositive("width");
    const QRectF place(corner, QSizeF(width, TakePositive("height")));
    const qreal radius = Has("rx") ? TakePositive("rx") : 0;
    Require(radius <= std::min(place.width(), place.height()) / 2);
    QPainterPath path;
    path.addRoundedRect(place, radius, radius);
    return path;
}

int SvgAttributes::TakeWord(const char* name, std::initializer_list<const char*> words) {
    if (!Has(name))
        return 0;
    const QString word = Take(name);
    const auto* const found = std::find_if(
        words.begin(), words.end(), [&word](const char* known) { return word == QLatin1String(known); });
    Require(found != words.end());
    return found == words.end() ? 0 : static_cast<int>(found - words.begin());
}

qreal SvgAttributes::Number(const QString& text) {
    Require(IsNumber(text));
    return text.toDouble();
}

QColor SvgAttributes::Colour(const QString& text) {
    Require(IsColour(text));
    return QColor(text);
}

}  // namespace tallyhorn
