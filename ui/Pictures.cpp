#include "ui/Pictures.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "ui/AnsiString.h"
#include "ui/SvgPicture.h"

/// Prevents the linker from omitting the resource files of this static library.  Q_INIT_RESOURCE must be used
/// outside of any namespace.
static void LinkFiles() {
    Q_INIT_RESOURCE(pictures);
}

namespace tallyhorn {
namespace {

constexpr float Faded = 0.4F;  ///< the opacity of a disabled control's icon

/// One picture file, read when it is drawn for the first time.
class PictureFile {
public:
    explicit PictureFile(QString name) : name_(std::move(name)) {}

    /// Draws the picture, or nothing if there is no such file.
    void Paint(QPainter& painter) {
        if (!picture_)
            picture_ = Read().value_or(SvgPicture());
        picture_->Paint(painter);
    }

private:
    std::optional<SvgPicture> Read() const {
        LinkFiles();
        QFile file(QStringLiteral(":/tallyhorn/icons/%1.svg").arg(name_));
        return file.open(QIODevice::ReadOnly) ? SvgPicture::Read(file.readAll()) : std::nullopt;
    }

    QString name_;
    std::optional<SvgPicture> picture_;
};

/// Paints a picture at any size, faded for a disabled control.  Caches the result for each size, because
/// drawing the curves takes longer than drawing all other parts of a row in a list.
class DrawnIcon final : public QIconEngine {
public:
    explicit DrawnIcon(std::shared_ptr<PictureFile> picture) : picture_(std::move(picture)) {}

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

    QIconEngine* clone() const override { return new DrawnIcon(picture_); }

private:
    /// Returns the picture, `side` device-independent pixels wide and high.  One such pixel is `ratio` screen
    /// pixels wide.
    const QPixmap& Drawn(int side, qreal ratio, QIcon::Mode mode) {
        const bool faded = mode == QIcon::Disabled;
        QPixmap& pixmap = drawn_[{qRound(side * ratio), faded}];
        if (!pixmap.isNull() && pixmap.devicePixelRatioF() == ratio)
            return pixmap;
        pixmap = QPixmap(qRound(side * ratio), qRound(side * ratio));
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side * ratio / SvgPicture::Grid, side * ratio / SvgPicture::Grid);
        picture_->Paint(painter);
        if (faded) {
            // Fades the finished picture as a whole, because translucent shapes would show the shapes that
            // they cover.
            painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
            painter.fillRect(0, 0, SvgPicture::Grid, SvgPicture::Grid, QColor::fromRgbF(0, 0, 0, Faded));
        }
        painter.end();
        pixmap.setDevicePixelRatio(ratio);
        return pixmap;
    }

    const std::shared_ptr<PictureFile> picture_;
    std::map<std::pair<int, bool>, QPixmap> drawn_;
};

QIcon MakeIcon(const QString& name) {
    return QIcon(new DrawnIcon(std::make_shared<PictureFile>(name)));
}

}  // namespace

QIcon EventIcon(EventType type) {
    return MakeIcon(ToQString(EventTypeKey(type)));
}

std::array<QIcon, EventPictureCount> EventIcons() {
    std::array<QIcon, EventPictureCount> icons;
    for (std::size_t i = 0; i < icons.size(); ++i)
        icons.at(i) = EventIcon(static_cast<EventType>(i));
    return icons;
}

QString SpokenType(EventType type) {
    return IsKnown(type) ? ToQString(EventTypeName(type)) : QStringLiteral("Unknown type");
}

QIcon AlarmIcon() {
    return MakeIcon(QStringLiteral("alarm"));
}

QIcon CommandIcon(CommandPicture picture) {
    constexpr std::array<const char*, CommandPictureCount> Names = {
        "delete",      "clear",  "pause",     "resume", "view", "filter", "suppress",
        "eventviewer", "export", "configure", "help",   "up",   "down",   "copy"};
    return MakeIcon(QLatin1String(Names.at(static_cast<std::size_t>(picture))));
}

QIcon ConsoleIcon() {
    return MakeIcon(QStringLiteral("console"));
}

QIcon TrayPicture(int image) {
    return MakeIcon(QStringLiteral("tray%1").arg(image));
}

QIcon StartupPicture() {
    return MakeIcon(QStringLiteral("startup"));
}

}  // namespace tallyhorn
