#include <gmock/gmock.h>

#include <QGroupBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTabBar>
#include <QToolTip>

#include "tests/forms/ConsoleFixture.h"
#include "tests/forms/ControlChecks.h"

namespace tallyhorn {
namespace {

using ConsoleTest = ConsoleFixture;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST_F(ConsoleTest, ShowsArrivalsByTypeInTheRightFramesAndHasSoundControls) {
    StartListening();
    const std::pair<const char*, const char*> arrivals[] = {
        {"one", "Error"}, {"two", "Information"}, {"three", "Warning"}};
    for (const auto& [name, type] : arrivals)
        Arrive(name, type);
    Poll();
    // Element 0, the critical list, is at the bottom of the page.
    const char* const alarms[] = {"one", "three", "two"};
    for (int element = 0; element < 3; ++element) {
        MessageListView* const list = List(element);
        EXPECT_EQ(list->parentWidget(), Find("fraNetBiosTypes" + std::to_string(2 - element)));
        ASSERT_EQ(list->model()->rowCount(), 1);
        EXPECT_EQ(list->model()->index(0, 1).data().toString(), alarms[element]);
        EXPECT_TRUE(list->isEnabled());
    }
    EXPECT_EQ(Panel(1) + Panel(2) + Panel(3),
              "3 NetBIOS Message(s)0 Syslog Message(s)Status: Processing Messages");
    EXPECT_FALSE(SyslogList(0)->isEnabled()) << "the list is empty";
    EXPECT_EQ(SyslogList(0)->viewport()->backgroundRole(), QPalette::Button);
    EXPECT_EQ(List(0)->viewport()->backgroundRole(), QPalette::Base);
    for (const auto& [name, type] : arrivals)
        Send(Datagram(name, type, "pc"));
    Handle();
    console_->Window().activateWindow();
    AWAIT(console_->Window().isActiveWindow());
    for (int page = 0; page < 3; ++page) {
        ShowPage(page);
        QWidget* const view = page == 0 ? List(0) : page == 1 ? SyslogList(0) : static_cast<QWidget*>(Tree());
        view->setFocus();
        ExpectSoundControls(console_->Window());
    }
}

TEST_F(ConsoleTest, TheLayoutFillsTheWindowWithoutGapsOrOverlap) {
    Start("MessageViews=3\r\n");
    auto* const tabs = Find<QTabWidget>("tabMessageTypes");
    EXPECT_TRUE(tabs->isTabVisible(0) && tabs->isTabVisible(1) && !tabs->isTabVisible(2));
    for (const QSize size : {QSize(1280, 760), QSize(700, 500), QSize(1600, 1100)}) {
        console_->Window().showNormal();
        console_->Window().resize(size);
        // While no page is shown, the tabs have no height; afterwards they must get it back.
        for (const bool shown : {false, true}) {
            for (const MessagePage page : {MessagePage::NetBios, MessagePage::Syslog})
                console_->Window().ShowPage(page, shown);
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(tabs->size(), console_->Window().centralWidget()->size());
        // Twips at 96 dots an inch: the first frame begins 360 below the top of the tabs, and the frames
        // share the height less 450.
        ASSERT_EQ(tabs->logicalDpiX(), 96);
        const int height = tabs->height() * 15 - 450;
        for (int i = 0; i < 3; ++i) {
            auto* const frame = Find<QGroupBox>("fraNetBiosTypes" + std::to_string(i));
            EXPECT_EQ(frame->mapTo(tabs, QPoint()).y(), (360 + i * (height / 3)) / 15) << i;
            EXPECT_EQ(frame->height(), height / 3 / 15) << i;
            EXPECT_GE(frame->y(), 0) << "hidden by the tabs";
            EXPECT_TRUE(frame->rect().contains(List(2 - i)->geometry())) << i;
            EXPECT_NEAR(List(2 - i)->width(), frame->width() - 32, 1);
        }
    }
    EXPECT_NEAR(List(1)->ColumnWidth(4), 0.15 * List(1)->width(), 1);
}

TEST_F(ConsoleTest, OneChannelsListsShareTheirColumnWidthsWhichAreSaved) {
    Start("MessageViews=7\r\nDateTime=1\r\nSeperator=.\r\nColWidth1=3000\r\nColWidth2=1500\r\n");
    Receive({"one"});
    EXPECT_EQ(List(0)->model()->index(0, 0).data().toString(), "21.08.2008 2:05:09 PM");
    EXPECT_EQ(List(2)->ColumnWidth(0), 200);
    for (QWidget* const released : {List(0)->Header()->viewport(), List(0)->viewport()}) {
        List(0)->SetColumnWidth(1, List(0)->ColumnWidth(1) + 20);
        QTest::mouseClick(released, Qt::LeftButton);
        QCoreApplication::processEvents();
        EXPECT_EQ(List(2)->ColumnWidth(1), List(0)->ColumnWidth(1));
    }
    ShowPage(1);
    EXPECT_EQ(SyslogList(1)->ColumnWidth(1), 100) << "the lists of the other channel keep their widths";
    boxes_.Answer = false;
    CloseByUser();
    EXPECT_TRUE(console_->Window().isVisible());
    EXPECT_THAT(boxes_.Shown, ElementsAre("Are you sure you wish to close the console?"));
    EXPECT_THAT(SettingsText(), HasSubstr("ColWidth1=3000\r\nColWidth2=2100\r\n"));
    EXPECT_THAT(SettingsText(), Not(HasSubstr("CPWidth=0")));
}

TEST_F(ConsoleTest, EndsWithTheUsersSessionWithoutAQuestion) {
    for (const bool loggingOff : {false, true}) {
        Start();
        QEvent quit(QEvent::Quit);
        loggingOff ? static_cast<void>(QCoreApplication::sendEvent(qApp, &quit)) : console_->End();
        QCoreApplication::processEvents();
        EXPECT_TRUE(console_->HasEnded());
        EXPECT_TRUE(boxes_.Shown.empty());
        EXPECT_FALSE(mailslots_.ByName.contains("TallyhornEngine")) << "the mailslot is closed";
        EXPECT_THAT(SettingsText(), HasSubstr("CPWidth="));
        console_.reset();
    }
}

/// A delete hides the list for a moment and may leave it empty.  Neither may move the focus to another list.
TEST_F(ConsoleTest, ADeleteLeavesTheFocusWhereTheUserPutIt) {
    Start();
    for (const char* const type : {"Information", "Information", "Information", "Warning", "Error"})
        Receive({"a"}, type);
    ClickRow(List(2), 0);
    Find<QTabWidget>("tabMessageTypes")->tabBar()->setFocus();
    Command("delete");
    EXPECT_EQ(List(2)->model()->rowCount(), 2);
    EXPECT_FALSE(List(2)->hasFocus());
    for (int element = 0; element < 3; ++element)
        List(element)->selectAll();
    MessageListView* const list = List(2);
    ClickRow(list, 0);
    ASSERT_TRUE(list->hasFocus());
    for (int left = 1; left >= 0; --left) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
        EXPECT_EQ(list->model()->rowCount(), left);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_FALSE(list->isEnabled());
    EXPECT_EQ(Panel(1), "2 NetBIOS Message(s)");
}

/// The letters are S for a selection with about the desktop's colour, p for a pale and - for an invisible
/// one. The frame around the row with the focus changes the colour somewhat.
TEST_F(ConsoleTest, TheActiveListLooksActiveAndComesToTheFrontForItsQuestion) {
    StartListening();
    Receive({"a"}, "Error");
    Receive({"b"}, "Warning");
    Send(Datagram("c", "Error", "pc"));
    Handle();
    const auto look = [](MessageListView* list) {
        const QRect row = list->visualRect(list->model()->index(0, 0));
        const QColor drawn = list->viewport()->grab().toImage().pixelColor(1, row.center().y());
        const QPalette desktop = QApplication::palette(list);
        const auto distance = [&](const QColor& color) {
            return std::abs(drawn.red() - color.red()) + std::abs(drawn.blue() - color.blue());
        };
        const int strong = distance(desktop.color(QPalette::Highlight));
        const int none = distance(desktop.color(QPalette::Base));
        return none == 0 ? "-" : 3 * strong < none ? "S" : "p";
    };
    const auto looks = [&] { return std::string(look(List(0))) + look(List(1)) + look(SyslogList(0)); };
    ShowPage(1);
    ClickRow(SyslogList(0), 0);
    ShowPage(0);
    ClickRow(List(0), 0);
    ClickRow(List(1), 0);
    EXPECT_EQ(looks(), "pSp");
    QTest::keyClick(&console_->Window(), Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(List(0)->hasFocus());
    EXPECT_EQ(looks(), "Spp");
    ShowPage(2);
    boxes_.Answer = false;
    boxes_.WhileAsked = [&] {
        EXPECT_EQ(Find<QTabWidget>("tabMessageTypes")->currentIndex(), 0);
        EXPECT_EQ(looks(), "S--");
    };
    Command("delete");
    EXPECT_EQ(boxes_.Shown.size(), 1U);
    EXPECT_TRUE(List(0)->hasFocus());
    EXPECT_EQ(looks(), "Spp");
    QTest::keyClick(&console_->Window(), Qt::Key_S, Qt::AltModifier);
    QCoreApplication::processEvents();
    EXPECT_TRUE(SyslogList(0)->hasFocus());
    EXPECT_EQ(looks(), "ppS");
}

TEST_F(ConsoleTest, WarnsOfASecondInstanceAndOfAMissingMailslot) {
    Start();
    InstanceLock second(InstanceName(), folder_ / "locks");
    EXPECT_FALSE(Console(Machine(second), folder_.Path(), folder_.Path()).Start());
    EXPECT_THAT(boxes_.Shown, ElementsAre(HasSubstr("Only one instance")));
    InstanceLock third(InstanceName() + "2", folder_ / "locks");
    EXPECT_FALSE(Console(Machine(third), folder_.Path(), folder_.Path()).Start());
    EXPECT_THAT(boxes_.Shown, ElementsAre(HasSubstr("Only one instance"), HasSubstr("Only one instance")))
        << "another session's console may not use the same folder";
    boxes_.Shown.clear();
    const TemporaryFolder elsewhere;
    Console withoutMailslot(Machine(third), elsewhere.Path(), elsewhere.Path());
    EXPECT_TRUE(withoutMailslot.Start());
    EXPECT_THAT(boxes_.Shown, ElementsAre(HasSubstr("no mailslot messages will be received")));
    withoutMailslot.End();
}

class ConsoleOrderTest : public ConsoleFixture {
protected:
    /// Returns a letter for each thing that is open or visible: mailslot (m), UDP port (u), icon (i), window
    /// (w), the Loading/Saving window (L), rows (R).
    std::string Snapshot() {
        std::string now;
        const auto add = [&now](char letter, bool there) { now += there ? std::string(1, letter) : ""; };
        add('m', mailslots_.ByName.contains("TallyhornEngine"));
        add('u', !datagrams_.Bound.empty());
        add('i', !area_.Calls.empty() && area_.Calls.back().starts_with("add"));
        add('w', console_->Window().isVisible());
        add('L', std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* widget) {
                return widget->objectName() == QLatin1String("frmSavingMessages") && widget->isVisible();
            }));
        add('R', console_->Window().findChild<QWidget*>("lvwSyslog0") != nullptr &&
                     SyslogList(0)->model()->rowCount() > 0);
        return now;
    }
    /// Takes a snapshot whenever events run, and records it if it differs from the previous one.
    void Watch() {
        QObject::connect(&watch_, &QTimer::timeout, qApp, [this] {
            if (seen_.empty() || seen_.back() != Snapshot())
                seen_.push_back(Snapshot());
            if (whileLoading_ && seen_.back().ends_with("LR"))
                std::exchange(whileLoading_, nullptr)();
        });
        watch_.start(0);
    }

    std::function<void()> whileLoading_;
    std::vector<std::string> seen_;
    QTimer watch_;
};

TEST_F(ConsoleOrderTest, StartsAndEndsInOrderAndLosesNothing) {
    StartListening();
    for (int i = 0; i < 50; ++i)
        Send(Datagram("old", "Error", "pc"));
    Handle();
    Command("pause");
    Send(Datagram("queued", "Error", "pc"));
    AWAIT(datagrams_.Bound[Port].Waiting.empty());
    Send(Datagram("waiting", "Error", "pc"));
    Watch();
    console_->End();
    EXPECT_THAT(seen_, ElementsAre("iwR", "wLR"))
        << "first the mailslot and the port are closed, then the icon, and then the backup is written";
    const std::string saved = ReadBytes(folder_ / "Backup.dat");
    EXPECT_LT(saved.find("Alarm Name: queued"), saved.find("Alarm Name: waiting"));
    EXPECT_THAT(saved, HasSubstr("Alarm Name: waiting"));
    EXPECT_FALSE(console_->Window().isVisible());
    console_.reset();

    seen_.clear();
    whileLoading_ = [this] { Send(Datagram("new", "Error", "pc")); };
    clock_.PerLook = std::chrono::milliseconds(4);
    Restart();
    clock_.PerLook = std::chrono::milliseconds(0);
    watch_.stop();
    seen_.resize(3);
    EXPECT_THAT(seen_, ElementsAre("m", "muL", "muLR"))
        << "the port is bound before the backup is loaded, and the window is shown last";
    EXPECT_THAT(Snapshot(), HasSubstr("w"));
    Handle();
    console_->End();
    const std::string again = ReadBytes(folder_ / "Backup.dat");
    EXPECT_THAT(again, StartsWith(saved)) << "an arrival during the load comes after the restored messages";
    EXPECT_THAT(again, HasSubstr("Alarm Name: new"));
    console_.reset();

    whileLoading_ = [this] { console_->End(); };
    watch_.start(0);
    clock_.PerLook = std::chrono::milliseconds(4);
    Restart();
    watch_.stop();
    EXPECT_TRUE(console_->HasEnded());
    EXPECT_THAT(seen_.back(), Not(HasSubstr("w"))) << "the end of the session ends the load";
    EXPECT_EQ(ReadBytes(folder_ / "Backup.dat"), again);
}

TEST_F(ConsoleTest, ADamagedBackupIsANoticeUntilTheUserLooksAtIt) {
    WriteBytes(folder_ / "Backup.dat", "00020" + std::string(20, 'x') + "damage");
    Start();
    auto* const notice = Find<QPushButton>("cmdNotice");
    QWidget* const bar = notice->parentWidget();
    const int height = bar->height();
    EXPECT_EQ(notice->text(), "Damaged backup");
    EXPECT_THAT(notice->accessibleDescription().toStdString(), HasSubstr("could not be read"));
    EXPECT_EQ(boxes_.Shown, std::vector<std::string>());
    console_->Window().activateWindow();
    AWAIT(console_->Window().isActiveWindow());
    notice->setFocus(Qt::TabFocusReason);
    ExpectSoundControls(console_->Window());
    ServerDisplay& display = console_->Window();
    display.ShowNotice(Notice::NotProtected, "details");
    EXPECT_EQ(notice->text(), "Not protected") << "the more urgent one";
    QTest::keyClick(notice, Qt::Key_Return);
    EXPECT_EQ(QToolTip::text(), "details");
    EXPECT_EQ(notice->text(), "Not protected") << "it stays until it is solved";
    display.ShowNotice(Notice::NotProtected, "");
    EXPECT_EQ(notice->text(), "Damaged backup");
    QTest::keyClick(notice, Qt::Key_Return);
    EXPECT_FALSE(notice->isVisible());
    QCoreApplication::processEvents();
    EXPECT_EQ(bar->height(), height) << "the status bar is not higher with a notice";
}

TEST_F(ConsoleTest, StartsWithDamagedFiles) {
    std::string bytes;
    for (int i = 0; i < 5000; ++i)
        bytes += static_cast<char>((i * 7919) >> 3);
    WriteBytes(folder_ / "SavedFilters.dat", bytes);
    Start(
        "CPWidth=2147483647\r\nCPHeight=-5\r\nColWidth1=-2147483648\r\nColWidth2=99999999999\r\nMessageViews="
        "255\r\n" +
        bytes);
    Receive({"one"});
    EXPECT_EQ(Panel(1), "1 NetBIOS Message(s)");
    EXPECT_LE(console_->Window().normalGeometry().width(), console_->Window().screen()->geometry().width());
}

}  // namespace
}  // namespace tallyhorn
