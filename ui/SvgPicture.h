#pragma once

#include <QBrush>
#include <QByteArray>
#include <QPainterPath>
#include <QPen>
#include <optional>
#include <vector>

class QPainter;
class QXmlStreamReader;

namespace tallyhorn {

/// Owns the shapes of one SVG file.  Supports only the subset of SVG that this program's own files use,
/// because the Windows build does not contain Qt's SVG module.
///
/// The root's only attribute is viewBox="0 0 16 16".  It contains the elements path, rect, circle, line,
/// polygon and polyline with the attributes fill, stroke, stroke-width, stroke-linecap and stroke-linejoin.
/// A colour is #rrggbb or none.  A path consists of the commands M, L, H, V, C and Z, with one letter for
/// each group of numbers.
class SvgPicture {
public:
    /// The side of the square in which the shapes are drawn.
    static constexpr int Grid = 16;

    /// Reads a file.  Returns nothing if the file contains anything unsupported, so that no picture is drawn
    /// incompletely.
    static std::optional<SvgPicture> Read(const QByteArray& svg);

    /// Draws the shapes into a square of `Grid` by `Grid` units.  The caller scales the painter to the size
    /// of the picture.
    void Paint(QPainter& painter) const;

private:
    struct Shape {
        QPainterPath Outline;
        QBrush Fill;
        QPen Stroke;
    };

    /// Processes the current token of the file.  `depth` counts the open elements.  Returns false if the
    /// token is not supported.
    bool Take(QXmlStreamReader& xml, int& depth);
    bool TakeShape(const QXmlStreamReader& xml);

    std::vector<Shape> shapes_;
};

}  // namespace tallyhorn
