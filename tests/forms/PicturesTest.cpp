#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <map>
#include <string>

#include "ui/Pictures.h"
#include "ui/SvgPicture.h"

namespace tallyhorn {
namespace {

/// Returns all icons, by the names that failure messages use.
std::map<std::string, QIcon> AllIcons() {
    std::map<std::string, QIcon> icons{{"alarm", AlarmIcon()}, {"console", ConsoleIcon()}};
    for (std::size_t i = 0; i < EventPictureCount; ++i)
        icons["event " + std::to_string(i)] = EventIcon(static_cast<EventType>(i));
    for (std::size_t i = 0; i < CommandPictureCount; ++i)
        icons["command " + std::to_string(i)] = CommandIcon(static_cast<CommandPicture>(i));
    for (int i = 0; i < 3; ++i)
        icons["tray " + std::to_string(i)] = TrayPicture(i);
    return icons;
}

QImage Drawn(const QIcon& icon, int side, QRgb background, QIcon::Mode mode = QIcon::Normal) {
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
    painter.end();
    return image;
}

/// Counts the pixels whose grey values differ clearly.  If there are many, the pictures differ in shape, not
/// only in colour.
int ClearlyDifferent(const QImage& one, const QImage& other) {
    constexpr int Clear = 48;  ///< the least difference of two grey values (0 to 255) that counts as clear
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            count += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) >= Clear ? 1 : 0;
    }
    return count;
}

constexpr QRgb Light = 0xFFFFFFFF;

TEST(PicturesTest, AllAreVisibleAndDifferentAt16Pixels) {
    std::map<std::string, QIcon> icons = AllIcons();
    ASSERT_EQ(icons.size(), 25U);
    icons["nothing"] = QIcon();
    for (const QRgb background : {Light, 0xFF232629U}) {
        std::map<std::string, QImage> images;
        for (const auto& [name, icon] : icons) {
            const QImage image = Drawn(icon, 16, background);
            for (const auto& [otherName, other] : images)
                EXPECT_GE(ClearlyDifferent(image, other),
                          name == "nothing" || otherName == "nothing" ? 24 : 12)
                    << name << " and " << otherName;
            images[name] = image;
        }
    }
}

TEST(PicturesTest, DisabledIconsAreFainterAndEverySizeIsFilled) {
    const auto darkness = [](const QIcon& icon, int side, QIcon::Mode mode) {
        const QImage image = Drawn(icon, side, Light, mode);
        int sum = 0;
        for (int pixel = 0; pixel < side * side; ++pixel)
            sum += 255 - qGray(image.pixel(pixel % side, pixel / side));
        return sum;
    };
    for (const auto& [name, icon] : AllIcons()) {
        const int normal = darkness(icon, 32, QIcon::Normal);
        EXPECT_NEAR(darkness(icon, 32, QIcon::Disabled), normal * 0.4, normal * 0.02) << name;
        EXPECT_NEAR(darkness(icon, 64, QIcon::Normal), normal * 4, normal * 0.1) << name;
    }
}

/// What is supported is tested above: the program's own pictures contain all of it.
TEST(SvgPictureTest, RefusesWhatIsNotSupported) {
    const QByteArray root = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">)";
    const QByteArray good = R"(<circle cx="8" cy="8" r="7"/>)";
    ASSERT_TRUE(SvgPicture::Read(root + good + "</svg>"));
    for (const char* const inside :
         {"<ellipse cx='8' cy='8' rx='7' ry='7'/>", "text", "<circle cx='8' cy='8'/>",
          "<circle cx='8' cy='8' r='7' opacity='0.5'/>", "<circle cx='8px' cy='8' r='7'/>",
          "<polygon points='1,2 3'/>", "<path d='M 1 2 L 3'/>", "<path d='M 1 2 A 3 4 5 6 7 8 9'/>"})
        EXPECT_FALSE(SvgPicture::Read(root + good + inside + "</svg>")) << inside;
}

}  // namespace
}  // namespace tallyhorn
