#pragma once

#include <QBrush>
#include <QHash>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QString>
#include <initializer_list>

class QXmlStreamAttributes;

namespace tallyhorn {

/// Copies of the attributes of one SVG element.  The Take functions read attributes and remove them; if one
/// is missing or has an unsupported value, `AreUnderstood` returns false from then on.
class SvgAttributes {
public:
    explicit SvgAttributes(const QXmlStreamAttributes& attributes);

    /// Returns whether every attribute has been taken and had a supported value.
    bool AreUnderstood() const { return understood_ && left_.isEmpty(); }

    /// Returns the outline of the element, such as "rect", from the attributes that describe its shape. Empty
    /// for an unsupported element.
    QPainterPath TakeOutline(const QString& element);
    QBrush TakeFill();
    QPen TakeStroke();

private:
    bool Has(const char* name) const { return left_.contains(QString::fromLatin1(name)); }
    QString Take(const char* name);
    qreal TakeNumber(const char* name) { return Number(Take(name)); }
    /// Takes a number that must be positive, such as a length.
    qreal TakePositive(const char* name);
    QPolygonF TakePoints();
    QPainterPath TakePath();
    QPainterPath TakeRectangle();
    /// Returns the index of the attribute's word in `words`, or 0 if the attribute is missing.
    int TakeWord(const char* name, std::initializer_list<const char*> words);
    qreal Number(const QString& text);
    QColor Colour(const QString& text);
    void Require(bool condition) { understood_ = understood_ && condition; }

    QHash<QString, QString> left_;
    bool understood_ = true;
};

}  // namespace tallyhorn
