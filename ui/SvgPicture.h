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

/// A picture read from an SVG file of the few means that this program's own files use; owns its shapes and
/// never changes.  User-interface thread only.
///
/// Below the root, whose one attribute is viewBox="0 0 16 16", stand path, rect, circle, line, polygon and
/// polyline, with fill, stroke, stroke-width, stroke-linecap and stroke-linejoin.  Colours are #rrggbb or
/// none; a path has M, L, H, V, C and Z, a letter before each group of numbers.
class SvgPicture {
public:
    /// The side of the square that the shapes lie in.
    static constexpr int Grid = 16;

    /// Nothing where the file holds anything else, so that no picture is ever drawn in part.
    static std::optional<SvgPicture> Read(const QByteArray& svg);

    /// Draws it on the grid; the caller scales.
    void Paint(QPainter& painter) const;

private:
    struct Shape {
        QPainterPath Outline;
        QBrush Fill;
        QPen Stroke;
    };

    /// The file's next part, `depth` elements deep; false where it is not known.
    bool Take(QXmlStreamReader& xml, int& depth);
    bool TakeShape(const QXmlStreamReader& xml);

    std::vector<Shape> shapes_;
};

}  // namespace tallyhorn
