#include "desktop/help/forms/HelpPageView.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QTextDocument>

#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

constexpr int LargestPictureSide = 4000;  ///< in pixels

QString Scheme() {
    return QStringLiteral("chm");
}

/// A document that only converts a page to plain text; it loads no pictures or style sheets.
class TextAlone final : public QTextDocument {
protected:
    QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return QByteArray(""); }
};

/// Returns the picture in the bytes, or a single transparent pixel if they contain none or one that is too
/// large: if it returned no picture, Qt would look for a file of that name.
QImage Decode(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    QImage picture;
    if (size.isValid() && size.width() <= LargestPictureSide && size.height() <= LargestPictureSide)
        picture = reader.read();
    if (picture.isNull()) {
        picture = QImage(1, 1, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
    }
    return picture;
}

}  // namespace

HelpPageView::HelpPageView(const HelpBook& book, QWidget* parent) : QTextBrowser(parent), book_(book) {
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    connect(this, &QTextBrowser::anchorClicked, this, &HelpPageView::Follow);
}

void HelpPageView::ShowPage(const std::string& local) {
    const QString link = ToQString(local);
    QUrl url;
    url.setScheme(Scheme());
    url.setPath(QLatin1Char('/') + link.section(QLatin1Char('#'), 0, 0));
    if (link.contains(QLatin1Char('#')))
        url.setFragment(link.section(QLatin1Char('#'), 1));
    setSource(url);
}

std::string HelpPageView::PageOf(const QUrl& source) {
    const QString path = source.path();
    return FromQString(path.mid(path.startsWith(QLatin1Char('/')) ? 1 : 0));
}

/// Ignores links that lead out of the help file.
void HelpPageView::Follow(const QUrl& link) {
    if (link.scheme() == Scheme())
        setSource(link);
}

QString HelpPageView::PlainText(const std::string& page) const {
    const std::string html = book_.Read(page);
    TextAlone document;
    if (IsModestHtml(html))
        document.setHtml(ToQString(html));
    return document.toPlainText();
}

/// Never returns an invalid result: for such a result, Qt would look for a file of that name.
QVariant HelpPageView::loadResource(int type, const QUrl& name) {
    std::string bytes;
    if (name.scheme() == Scheme() || name.isRelative())
        bytes = book_.Read(PageOf(name));
    if (type == QTextDocument::ImageResource)
        return Decode(QByteArray::fromStdString(bytes));
    if (type == QTextDocument::HtmlResource && (bytes.empty() || !IsModestHtml(bytes)))
        bytes = "<p>This page cannot be shown: the help file does not have it, or it is damaged.</p>";
    return ToQString(bytes);
}

}  // namespace tallyhorn
