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

/// Owns copies of the attributes of one SVG element.  The Take functions read attributes and remove them.  If
/// a required attribute is missing or has an unsupported value, `AreUnderstood` returns false after that.
class SvgAttributes {
public:
    explicit SvgAttributes(const QXmlStreamAttributes& attributes);

    /// Returns whether all attributes have been taken and had supported values.
    bool AreUnderstood() const { return understood_ && left_.isEmpty(); }

    /// Takes the attributes that describe the shape of an element such as "rect", and returns its outline,
    /// which is empty for an unsupported element.
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
    /// Takes an attribute whose value is one of `words`.  Returns the index of that word, or 0 if the
    /// attribute is missing.
    int TakeWord(const char* name, std::initializer_list<const char*> words);
    qreal Number(const QString& text);
    QColor Colour(const QString& text);
    void Require(bool condition) { understood_ = understood_ && condition; }

    QHash<QString, QString> left_;
    bool understood_ = true;
};

}  // namespace tallyhorn
