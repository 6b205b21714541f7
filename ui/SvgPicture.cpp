#include "ui/SvgPicture.h"

#include <QPainter>
#include <QXmlStreamReader>

#include "ui/SvgAttributes.h"

namespace tallyhorn {
namespace {

const QString SvgNamespace = QStringLiteral("http://www.w3.org/2000/svg");
const QString ViewBox = QStringLiteral("0 0 16 16");

bool IsRoot(const QXmlStreamReader& xml) {
    const QXmlStreamAttributes attributes = xml.attributes();
    return xml.namespaceUri() == SvgNamespace && xml.name() == QLatin1String("svg") &&
           attributes.size() == 1 && attributes.value(QLatin1String("viewBox")) == ViewBox;
}

}  // namespace

std::optional<SvgPicture> SvgPicture::Read(const QByteArray& svg) {
    QXmlStreamReader xml(svg);
    SvgPicture picture;
    int depth = 0;
    while (!xml.atEnd()) {
        if (!picture.Take(xml, depth))
            return std::nullopt;
    }
    if (xml.hasError() || picture.shapes_.empty())
        return std::nullopt;
    return picture;
}

bool SvgPicture::Take(QXmlStreamReader& xml, int& depth) {
    switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            return depth == 1 ? IsRoot(xml) : depth == 2 && TakeShape(xml);
        case QXmlStreamReader::EndElement:
            --depth;
            return true;
        case QXmlStreamReader::Characters:
            return xml.isWhitespace();
        // Invalid means an error, for which the caller checks at the end.  Tokens that are not listed here,
        // such as a processing instruction, might change how the shapes look, and are refused.
        case QXmlStreamReader::StartDocument:
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::Invalid:
            return true;
        default:
            return false;
    }
}

bool SvgPicture::TakeShape(const QXmlStreamReader& xml) {
    SvgAttributes attributes(xml.attributes());
    Shape shape{attributes.TakeOutline(xml.name().toString()), attributes.TakeFill(),
                attributes.TakeStroke()};
    if (xml.namespaceUri() != SvgNamespace || shape.Outline.isEmpty() || !attributes.AreUnderstood())
        return false;
    shapes_.push_back(std::move(shape));
    return true;
}

void SvgPicture::Paint(QPainter& painter) const {
    for (const Shape& shape : shapes_) {
        painter.setBrush(shape.Fill);
        painter.setPen(shape.Stroke);
        painter.drawPath(shape.Outline);
    }
}

}  // namespace tallyhorn
