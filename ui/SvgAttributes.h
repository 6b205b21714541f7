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

/// The attributes of one element of an SVG file, each taken out as it is understood; owns copies of them.
/// User-interface thread only.  One that is missing, or says what is not known here, makes all of them wrong.
class SvgAttributes {
public:
    explicit SvgAttributes(const QXmlStreamAttributes& attributes);

    /// Whether all were understood and none is left.
    bool AreUnderstood() const { return understood_ && left_.isEmpty(); }

    /// What the element named so draws, out of the attributes that are its own; empty for an unknown one.
    QPainterPath TakeOutline(const QString& element);
    QBrush TakeFill();
    QPen TakeStroke();

private:
    bool Has(const char* name) const { return left_.contains(QString::fromLatin1(name)); }
    QString Take(const char* name);
    qreal TakeNumber(const char* name) { return Number(Take(name)); }
    /// As lengths are.
    qreal TakePositive(const char* name);
    QPolygonF TakePoints();
    QPainterPath TakePath();
    QPainterPath TakeRectangle();
    /// The word's place in the list of all that there are; 0 where the attribute is missing.
    int TakeWord(const char* name, std::initializer_list<const char*> words);
    qreal Number(const QString& text);
    QColor Colour(const QString& text);
    void Require(bool condition) { understood_ = understood_ && condition; }

    QHash<QString, QString> left_;
    bool understood_ = true;
};

}  // namespace tallyhorn
