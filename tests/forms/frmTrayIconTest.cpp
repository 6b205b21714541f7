#include <QMenu>

#include "tests/forms/ConsoleFixture.h"

namespace tallyhorn {
namespace {

/// Tests the notification-area icon and the hiding of the main window with the whole console.
class TrayIconTest : public ConsoleFixture {
protected:
    void StartQuietly() {
        Start("MessageViews=7\r\nSyslogUDPPort=5514\r\nSoundOn=1\r\n");
        EXPECT_EQ(area_.TakeCalls(), "add 0") << "the icon is shown beside the window";
    }
    frmServer& Window() { return console_->Window(); }
    QAction& Item(int index) { return *console_->PopUpMenu().actions().at(index); }
    QTimer& Timer(const char* name) {
        return *console_->PopUpMenu().parent()->findChild<QTimer*>(QLatin1String(name));
    }
    void Tick(const char* timer) { QMetaObject::invokeMethod(&Timer(timer), "timeout"); }
    void Minimize() {
        Window().setWindowState(Window().windowState() | Qt::WindowMinimized);
        QCoreApplication::processEvents();
    }
    /// Returns how the user sees the main window.
    std::string Place() {
        if (!Window().isVisible())
            return "hidden";
        return Window().isMinimized() ? "task bar" : Window().isMaximized() ? "maximised" : "normal";
    }
};

TEST_F(TrayIconTest, TheMenuIsCompleteAndItsCheckMarkFollowsTheSound) {
    StartQuietly();
    std::string captions;
    for (const QAction* const item : console_->PopUpMenu().actions())
        captions += (item->isSeparator() ? "-" : item->text().toStdString()) + "|";
    EXPECT_EQ(captions, "&Display Messages|&Sound|-|&About the Tallyhorn Listener Console|&Help|-|E&xit|");
    EXPECT_TRUE(Item(1).isChecked());
    Item(1).trigger();
    EXPECT_FALSE(Item(1).isChecked());
    InDialog([](QWidget& preferences) {
        EXPECT_FALSE(In(preferences, "chkSound")->isChecked());
        In(preferences, "chkSound")->click();
        QTest::keyClick(&preferences, Qt::Key_Return);
    });
    Command("mnuOptions_Preferences");
    EXPECT_TRUE(Item(1).isChecked());
    EXPECT_EQ(area_.TakeCalls(), "") << "none of this changes the icon";
}

TEST_F(TrayIconTest, AboutOpensOnceAndNotBehindAnotherDialog) {
    StartQuietly();
    std::string opened;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || !dialog->isActiveWindow())
            return;
        opened += dialog->objectName().toStdString() + " ";
        Window().activateWindow();
        Item(3).trigger();
        EXPECT_TRUE(dialog->isActiveWindow()) << "the open dialog is brought to the front";
        dialog->close();
    });
    watch.start(1);
    Item(3).trigger();
    Command("mnuOptions_Preferences");
    QTest::qWait(50);
    EXPECT_EQ(opened, "frmStartup frmPreferences ");
}

TEST_F(TrayIconTest, TheWindowHidesTheIconFlashesAndTheWindowReturnsAsItWas) {
    StartQuietly();
    Receive({"seen"});
    EXPECT_FALSE(Timer("timFlash").isActive()) << "the window is visible";
    List(0)->selectAll();
    Command("mnuFile_ViewMsg");
    auto* const details = Find("frmMessage");
    for (const std::string place : {"maximised", "normal"}) {
        if (Place() != place)
            Window().showNormal();
        const QRect geometry = Window().geometry();
        ASSERT_EQ(Place(), place);
        Minimize();
        EXPECT_EQ(Place(), "hidden");
        EXPECT_FALSE(details->isVisible()) << "it hides with its main window";
        EXPECT_EQ(area_.TakeCalls(), "add 0");
        if (place == "normal")
            Send(Datagram("new", "Error", "pc"));
        else
            Arrive("new", "Error");
        Poll();
        AWAIT(Timer("timFlash").isActive());
        EXPECT_EQ(Timer("timFlash").interval(), 500);
        Tick("timFlash");
        EXPECT_EQ(area_.TakeCalls(), "modify 2") << "each flash begins with its first picture";
        area_.At.DoubleClick();
        EXPECT_EQ(Place(), place);
        EXPECT_EQ(Window().geometry(), geometry) << place;
        EXPECT_TRUE(details->isVisible());
        EXPECT_FALSE(Timer("timFlash").isActive());
        QCoreApplication::processEvents();
        EXPECT_TRUE(area_.TakeCalls().starts_with("delete"));
    }
}

TEST_F(TrayIconTest, TheWindowIsReachableWhateverTheAreaDoes) {
    StartQuietly();
    area_.Available = false;
    Minimize();
    EXPECT_EQ(Place(), "task bar");
    Receive({"new"});
    EXPECT_TRUE(Timer("timFlash").isActive()) << "an area may appear later";
    EXPECT_TRUE(Timer("timWatch").isActive());
    area_.Available = true;
    Tick("timWatch");
    EXPECT_FALSE(Timer("timWatch").isActive()) << "the window does not need the area";
    EXPECT_EQ(Place(), "task bar");
    Window().showMaximized();
    QCoreApplication::processEvents();
    EXPECT_FALSE(Timer("timFlash").isActive()) << "the user sees the window";

    // Now the area disappears while the window is hidden.
    Minimize();
    ASSERT_EQ(Place(), "hidden");
    // If the area is missing at one tick only, it may be restarting: the window stays hidden.
    for (const bool available : {false, true, false}) {
        area_.Available = available;
        Tick("timWatch");
        EXPECT_EQ(Place(), "hidden");
        EXPECT_TRUE(Timer("timWatch").isActive());
    }
    area_.TakeCalls();
    Tick("timWatch");
    EXPECT_EQ(Place(), "maximised");
    EXPECT_EQ(area_.TakeCalls(), "delete");
    Minimize();
    EXPECT_EQ(Place(), "task bar");
}

TEST_F(TrayIconTest, ADialogKeepsTheWindowOnTheTaskBarAndTheMenuWorks) {
    StartQuietly();
    InDialog([this](QWidget& preferences) {
        for (const std::string place : {"normal", "maximised"}) {
            place == "normal" ? Window().showNormal() : Window().showMaximized();
            Minimize();
            EXPECT_EQ(Place(), "task bar");
            EXPECT_TRUE(preferences.isVisible());
            Item(0).trigger();
            EXPECT_EQ(Place(), place);
        }
        Minimize();
        preferences.close();
    });
    Command("mnuOptions_Preferences");
    AWAIT(Place() == "hidden");
    Item(0).trigger();
    ASSERT_EQ(Place(), "maximised");

    InDialog([this](QWidget& /*preferences*/) {
        Item(4).trigger();
        ASSERT_EQ(help_.Requests.size(), 1U) << "help does not wait for the dialog";
        EXPECT_EQ(help_.Requests[0].What.Context, HelpNumber(HelpContext::Contents));
        area_.TakeCalls();
        Item(6).trigger();
        EXPECT_FALSE(console_->HasEnded()) << "the console ends after the dialog";
    });
    Command("mnuOptions_Preferences");
    AWAIT(console_->HasEnded());
    EXPECT_TRUE(boxes_.Shown.empty()) << "nothing is asked";
    EXPECT_NE(SettingsText().find("CPWidth="), std::string::npos) << "the settings are saved";
    EXPECT_EQ(area_.TakeCalls(), "delete");
    area_.At.DoubleClick();
    EXPECT_EQ(Place(), "hidden") << "the icon has no effect any more";
}

}  // namespace
}  // namespace tallyhorn
