#include "desktop/forms/frmStartup.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFont>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>
#include <string>

#include "desktop/help/HelpContexts.h"
#include "platform/Clock.h"
#include "platform/UserNames.h"
#include "records/AnsiText.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"
#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

constexpr std::chrono::seconds SplashTime{2};

// Lengths in device-independent pixels.
constexpr int BandWidth = 176;  ///< the width of the coloured band at the left
constexpr int PictureSide = 112;
constexpr int Margin = 24;
constexpr QRgb BandTop = 0xFF2D7DD2;
constexpr QRgb BandBottom = 0xFF174A85;

/// "XXXX" is replaced by the current year.  Qt is mentioned because its licence requires that wherever the
/// program shows its own copyright.
constexpr const char* Notice =
    "Copyright \xA9 XXXX the makers of the Tallyhorn Listener Console\n"
    "Uses Qt, copyright The Qt Company Ltd. and others, under the LGPL 3,\nwhich comes with this program";

std::string YearOf(std::int64_t localSeconds) {
    using namespace std::chrono;
    const year_month_day day(floor<days>(sys_seconds(seconds(localSeconds))));
    return std::to_string(static_cast<int>(day.year()));
}

QString NoticeOf(const Clock& time) {
    return ToQString(Notice).replace(QStringLiteral("XXXX"),
                                     ToQString(YearOf(time.LocalSeconds())).rightJustified(4, '0'));
}

void ScaleFont(QLabel* label, double factor, QFont::Weight weight = QFont::Normal) {
    QFont font = label->font();
    font.setPointSizeF(QFontInfo(font).pointSizeF() * factor);
    font.setWeight(weight);
    label->setFont(font);
}

}  // namespace

frmStartup::frmStartup(Role role, const UserNames& names, const Clock& time, QWidget* parent)
    : QDialog(parent,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint) {
    setObjectName(QStringLiteral("frmStartup"));
    setProperty(HelpContextProperty, HelpNumber(HelpContext::About));
    setWindowTitle(QStringLiteral("About Tallyhorn Listener Console"));
    BuildLabels(names, time);
    LayOut();
    if (role == Role::Splash)
        BecomeSplash();
}

void frmStartup::BuildLabels(const UserNames& names, const Clock& time) {
    lblTitle = MakeLabel(QStringLiteral("Tallyhorn\nListener Console"), QStringLiteral("lblTitle"), this);
    lblVersion = MakeLabel(QStringLiteral("Version:  ") + QCoreApplication::applicationVersion(),
                           QStringLiteral("lblVersion"), this);
    lblStartupInfo[0] = MakeLabel(QStringLiteral("Username: ") + ToShownLine(AnsiFromUtf8(names.UserName())),
                                  QStringLiteral("lblStartupInfo0"), this);
    lblStartupInfo[1] =
        MakeLabel(QStringLiteral("Computer: ") + ToShownLine(AnsiFromUtf8(names.ComputerName())),
                  QStringLiteral("lblStartupInfo1"), this);
    lblCopyright = MakeLabel(NoticeOf(time), QStringLiteral("lblCopyright"), this);
    // A name may be wider than the screen; it must not widen the window.
    for (QLabel* const label : lblStartupInfo)
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lblTitle->setAccessibleName(QStringLiteral("Tallyhorn Listener Console"));
    ScaleFont(lblTitle, 1.8, QFont::DemiBold);
    ScaleFont(lblCopyright, 0.9);
    cmdClose = MakeButton(QStringLiteral("&Close"), QStringLiteral("cmdClose"), this);
    cmdClose->setDefault(true);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::close);
}

void frmStartup::LayOut() {
    auto* const layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->setContentsMargins(BandWidth + Margin, Margin, Margin, Margin * 3 / 4);
    layout->setSpacing(Margin / 4);
    layout->addWidget(lblTitle);
    layout->addWidget(lblVersion);
    layout->addSpacing(Margin * 3 / 4);
    layout->addWidget(lblStartupInfo[0]);
    layout->addWidget(lblStartupInfo[1]);
    layout->addSpacing(Margin * 3 / 4);
    layout->addWidget(lblCopyright);
    layout->addSpacing(Margin / 2);
    layout->addWidget(cmdClose, 0, Qt::AlignRight);
}

/// Centres the window on the screen instead of on the main window, which may not have its final place yet.
void frmStartup::BecomeSplash() {
    setWindowFlags(Qt::SplashScreen | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    QRect place(QPoint(), sizeHint());
    place.moveCenter(screen()->availableGeometry().center());
    move(place.topLeft());
    QTimer::singleShot(SplashTime, this, &QDialog::close);
}

bool frmStartup::event(QEvent* event) {
    // WindowBlocked means that a modal dialog or message box has opened, which the splash must not cover.
    if (event->type() == QEvent::WindowBlocked && windowType() == Qt::SplashScreen)
        close();
    return QDialog::event(event);
}

void frmStartup::mouseReleaseEvent(QMouseEvent* /*event*/) {
    close();
}

void frmStartup::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect band(0, 0, BandWidth, height());
    QLinearGradient blue(band.topLeft(), band.bottomLeft());
    blue.setColorAt(0, QColor::fromRgb(BandTop));
    blue.setColorAt(1, QColor::fromRgb(BandBottom));
    painter.fillRect(band, blue);
    QRect picture(0, 0, PictureSide, PictureSide);
    picture.moveCenter(band.center());
    StartupPicture().paint(&painter, picture);
    if (windowType() == Qt::SplashScreen) {
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

}  // namespace tallyhorn
