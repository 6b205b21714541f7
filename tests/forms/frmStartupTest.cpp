#include "desktop/forms/frmStartup.h"
#include "tests/forms/ConsoleFixture.h"
#include "tests/forms/ControlChecks.h"

namespace tallyhorn {
namespace {

class frmStartupTest : public ConsoleFixture {
protected:
    frmStartupTest() { keepsSplash_ = true; }
    /// Returns the splash window if it is visible.
    frmStartup* Splash() {
        auto* const splash = console_->Window().findChild<frmStartup*>();
        return splash != nullptr && splash->isVisible() ? splash : nullptr;
    }
    static QString Label(const QWidget& window, const char* name) {
        const auto* const label = window.findChild<QLabel*>(QLatin1String(name));
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << name;
        return label->text();
    }
    /// Opens the about box by the menu.  `act` must close it.
    void InAbout(const std::function<void(QWidget&)>& act) {
        InDialog<frmStartup>([&act](frmStartup& about) {
            act(about);
            EXPECT_FALSE(about.isVisible());
        });
        Command("mnuHelp_About");
    }
};

TEST_F(frmStartupTest, TheAboutBoxShowsVersionNamesAndTheYearOfItsOpening) {
    names_.User = "<b>J\xC3\xB6rg</b>";
    names_.Computer = "console-pc";
    Start();
    for (const auto& [localSeconds, year] :
         {std::pair(1'798'761'599, " 2026 "), std::pair(1'798'761'600, " 2027 ")}) {
        clock_.Local = localSeconds;
        InAbout([year = year](QWidget& about) {
            ExpectSoundControls(about);
            EXPECT_EQ(Label(about, "lblVersion"), QStringLiteral("Version:  4.7.11"));
            EXPECT_EQ(Label(about, "lblStartupInfo0"), QStringLiteral("Username: <b>J\u00F6rg</b>"));
            EXPECT_EQ(Label(about, "lblStartupInfo1"), QStringLiteral("Computer: console-pc"));
            const QString notice = Label(about, "lblCopyright");
            EXPECT_TRUE(notice.contains(QLatin1String(year))) << notice.toStdString();
            QTest::keyClick(&about, Qt::Key_Escape);
        });
    }
    InAbout([](QWidget& about) { QTest::mouseClick(In(about, "cmdClose"), Qt::LeftButton); });
    InAbout([](QWidget& about) { QTest::mouseClick(&about, Qt::LeftButton, {}, QPoint(10, 10)); });
}

TEST_F(frmStartupTest, TheSplashClosesAfterTwoSecondsAndTakesNoFocus) {
    QElapsedTimer shown;
    shown.start();
    Start();
    ASSERT_NE(Splash(), nullptr);
    EXPECT_TRUE(Splash()->isVisible() && !Splash()->isModal());
    AWAIT(QApplication::activeWindow() == &console_->Window());
    AWAIT(Splash() == nullptr);
    EXPECT_GE(shown.elapsed(), 1900);
}

TEST_F(frmStartupTest, TheSplashClosesForClicksDialogsAndAHiddenWindow) {
    Start();
    QTest::mouseClick(Splash(), Qt::LeftButton, {}, QPoint(10, 10));
    AWAIT(Splash() == nullptr);

    console_.reset();
    Restart();
    InAbout([this](QWidget& about) {
        const auto all = console_->Window().findChildren<frmStartup*>();
        EXPECT_EQ(std::count_if(all.begin(), all.end(), [](auto* window) { return window->isVisible(); }), 1);
        about.close();
    });

    console_.reset();
    Restart();
    console_->Window().setWindowState(Qt::WindowMinimized);
    AWAIT(!console_->Window().isVisible() && Splash() == nullptr);

    console_.reset();
    datagrams_.Taken.insert(Port);
    StartListening();
    EXPECT_EQ(Splash(), nullptr) << "a message box closes the splash";
    EXPECT_EQ(boxes_.Shown.size(), 1U);
}

/// As long as QCoreApplication::exec does not run, as in tests, QWidget::show runs pending events before it
/// returns if the window is a splash screen.
TEST_F(frmStartupTest, AnEndWhileTheSplashIsBeingShownHidesItAndDoesNotDeleteIt) {
    console_ = std::make_unique<Console>(Machine(instance_), folder_.Path(), programFolder_.Path());
    ASSERT_TRUE(console_->Start());
    QMetaObject::invokeMethod(
        &console_->Window(), [this] { console_->End(); }, Qt::QueuedConnection);
    AWAIT(console_->HasEnded());
    const auto* const splash = console_->Window().findChild<frmStartup*>();
    EXPECT_TRUE(splash != nullptr && !splash->isVisible());
}

TEST_F(frmStartupTest, ArrivalsPlayTheSoundAndTheEndClosesTheDevice) {
    std::ofstream(folder_ / "sound.wav") << "wave";
    Start("MessageViews=7\r\nSoundOn=1\r\n");
    Receive({"Full"});
    EXPECT_EQ(sound_.Commands, "Open Prev Play ");
    console_->End();
    EXPECT_EQ(sound_.Commands, "Open Prev Play Close ");
}

}  // namespace
}  // namespace tallyhorn
