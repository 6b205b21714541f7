#include <gmock/gmock.h>

#include <QMessageBox>
#include <QProgressBar>
#include <QToolBar>

#include "app/QtMessageBoxes.h"
#include "tests/forms/ConsoleFixture.h"
#include "tests/support/FakePendingEvents.h"
#include "views/forms/CommandQueue.h"
#include "views/messages/LongWork.h"

namespace tallyhorn {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(CommandQueueTest, CommandsWaitForWorkAndDialogsInTheirOrder) {
    Gate gate;
    CommandQueue queue(gate);
    std::string log;
    const auto write = [&log](const char* text) { return [&log, text] { log += text; }; };
    queue.RunAsWork([&] {
        queue.Run(write("a"));
        queue.Run(
            [&] {
                log += "[";
                queue.Run(write("c"));
                QCoreApplication::processEvents();
                queue.RunAsWork(write("timer"));
                log += "]";
            },
            CommandQueue::Kind::Dialog);
        queue.Run(write("b"));
        log += "work ";
    });
    EXPECT_EQ(log, "work ");
    AWAIT(log == "work a[timer]bc");
    queue.RunAsWork([&] {
        queue.Run(write("never"));
        queue.RunLast(write(" last"));
        queue.RunLast(write("never"));
    });
    AWAIT(log == "work a[timer]bc last");
    queue.Run(write("never"));
    QCoreApplication::processEvents();
    EXPECT_EQ(log, "work a[timer]bc last");
}

/// Tests the user's commands in a whole console.
class CommandsTest : public ConsoleFixture {
protected:
    void StartWithError() {
        StartListening();
        Receive({"m0"});
    }
    void ClickTool(const char* key) {
        auto* const bar = Find<QToolBar>("tbrMain");
        QTest::mouseClick(bar->widgetForAction(Find<QAction>(key)), Qt::LeftButton);
    }
    /// Presses the access key of the menu and then that of the item.
    void Choose(Qt::Key menu, Qt::Key item) {
        QTest::keyClick(&console_->Window(), menu, Qt::AltModifier);
        AWAIT(qApp->activePopupWidget() != nullptr);
        QTest::keyClick(qApp->activePopupWidget(), item);
    }
};

TEST_F(CommandsTest, ButtonsAndMenusGiveTheSameCommands) {
    Start();
    Receive({"Full"});
    ClickTool("eventviewer");
    EXPECT_EQ(boxes_.Shown.size(), 1U) << "no row is selected";
    ClickRow(List(0), 0);
    Choose(Qt::Key_T, Qt::Key_V);
    AWAIT(programs_.Started.size() == 1U);
    EXPECT_EQ(programs_.Started[0], (std::vector<std::string>{"eventvwr", "PC"}));

    boxes_.Answer = false;
    boxes_.Shown.clear();
    ClickTool("clear");
    ClickTool("delete");
    Choose(Qt::Key_F, Qt::Key_C);
    AWAIT(boxes_.Shown.size() == 3U);
    Choose(Qt::Key_F, Qt::Key_D);
    AWAIT(boxes_.Shown.size() == 4U);
    EXPECT_THAT(boxes_.Shown, ElementsAre(HasSubstr("erase"), HasSubstr("delete"), HasSubstr("erase"),
                                          HasSubstr("delete")));

    ClickTool("pause");
    EXPECT_EQ(Panel(3), "Status: Message Processing Paused");
    EXPECT_EQ(Find<QAction>("pause")->toolTip(), "Resume Message Processing");
    EXPECT_TRUE(Find<QTimer>("tmrResumeProcessing")->isActive());
    Choose(Qt::Key_E, Qt::Key_R);
    AWAIT(Panel(3) == "Status: Processing Messages");
    EXPECT_EQ(Find<QAction>("mnuEditPause")->text(), "&Pause Message Processing");
}

/// Work of less than half a second shows only the wait cursor.
TEST_F(CommandsTest, LongWorkShowsItsProgress) {
    Start();
    frmServer& window = console_->Window();
    const auto* const bar = Find<QProgressBar>("pgbWork");
    {
        FakeClock time;
        FakePendingEvents noEvents;
        TimeSlices slices(time, noEvents);
        time.PerLook = std::chrono::seconds(1);
        LongWork work(window, slices, 4);
        ASSERT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        work.Advance();
        EXPECT_FALSE(bar->isVisible());
        QTest::qWait(600);
        work.Advance();
        EXPECT_TRUE(bar->isVisible());
        EXPECT_EQ(bar->value() * 2, bar->maximum());
        {
            LongWork inside(window, slices, 100);
            inside.Advance(99);
        }
        EXPECT_EQ(bar->value() * 2, bar->maximum()) << "work inside other work shows no progress";
        ClickTool("clear");
        EXPECT_TRUE(boxes_.Shown.empty()) << "a command waits until work ends";
        ShowPage(1);
    }
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    AWAIT(boxes_.Shown.size() == 1U);
    EXPECT_THAT(boxes_.Shown[0], HasSubstr("NetBIOS")) << "the page shown when the command was given";
}

TEST_F(CommandsTest, PreferencesTakeEffectWithoutARestart) {
    StartWithError();
    ShowPage(0);
    InDialog([](QWidget& dialog) {
        QTest::keyClicks(dialog.focusWidget(), "5520");
        In(dialog, "chkShowTab1")->click();
        In(dialog, "optDateTime1")->click();
        QTest::keyClicks(In<QLineEdit>(dialog, "txtSeperator"), ".");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Command("configure");
    EXPECT_TRUE(datagrams_.Bound.contains(5520));
    EXPECT_FALSE(Find<QTabWidget>("tabMessageTypes")->isTabVisible(1));
    Receive({"later"});
    EXPECT_EQ(List(0)->model()->index(0, 0).data().toString(), "08/21/2008 2:05:09 PM");
    EXPECT_EQ(List(0)->model()->index(1, 0).data().toString(), "21.08.2008 2:05:09 PM");
    for (const char* const line : {"SyslogUDPPort=5520", "MessageViews=5", "DateTime=1", "Seperator=."})
        EXPECT_NE(SettingsText().find(line), std::string::npos) << line;

    console_->Window().SetColumnWidths({1500, 1500, 1500, 1500, 1500});
    console_->Window().showNormal();
    InDialog([](QWidget& dialog) {
        In(dialog, "cmdReset")->click();
        dialog.close();
    });
    Command("configure");
    EXPECT_TRUE(console_->Window().isMaximized());
    EXPECT_EQ(console_->Window().ColumnWidths(), ColumnWidthArray{});
    EXPECT_NEAR(List(0)->ColumnWidth(0), 0.23 * List(0)->width(), 1);
    EXPECT_NE(SettingsText().find("ColWidth5=0"), std::string::npos);
}

TEST_F(CommandsTest, APauseEndsWhileAQuestionIsOpen) {
    StartWithError();
    Command("pause");
    boxes_.Answer = false;
    boxes_.WhileAsked = [this] {
        for (int second = 0; second < 300; ++second) {
            if (Find<QTimer>("tmrResumeProcessing")->isActive())
                QMetaObject::invokeMethod(Find<QTimer>("tmrResumeProcessing"), "timeout");
        }
        EXPECT_EQ(Panel(3), "Status: Processing Messages");
    };
    Command("clear");
    EXPECT_EQ(boxes_.Shown.size(), 1U);
}

TEST_F(CommandsTest, ARepeatedCommandWaitsOnce) {
    StartWithError();
    Receive({"m1"}, "Warning");
    ClickRow(List(0), 0);
    console_->Window().Commands().RunAsWork([this] {
        for (int i = 0; i < 3; ++i)
            Command("mnuHelp_HelpFile");
        for (const int list : {0, 1}) {
            ClickRow(List(list), 0);
            Command("eventviewer");
        }
        QTest::mouseClick(List(2)->viewport(), Qt::LeftButton, {}, List(2)->viewport()->rect().bottomLeft());
    });
    AWAIT(!help_.Requests.empty());
    AWAIT(programs_.Started.size() == 2U);  // once for each of the lists 0 and 1
    QCoreApplication::processEvents();
    EXPECT_EQ(help_.Requests.size(), 1U);
}

TEST_F(CommandsTest, OnlyTheFirstQuestionOfThoseThatWaitIsAsked) {
    StartWithError();
    boxes_.Answer = false;
    const auto giveCommands = [this] {
        for (int i = 0; i < 3; ++i)
            CloseByUser();
        for (const char* const command : {"mnuFile_Exit", "clear", "eventviewer"})
            Command(command);
    };
    console_->Window().Commands().RunAsWork(giveCommands);
    AWAIT(!boxes_.Shown.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(boxes_.Shown, std::vector<std::string>{"Are you sure you wish to close the console?"});
    boxes_.WhileAsked = giveCommands;
    Command("clear");
    InDialog([&](QWidget& preferences) {
        giveCommands();
        preferences.close();
    });
    Command("configure");
    QCoreApplication::processEvents();
    EXPECT_EQ(boxes_.Shown.size(), 2U) << "what was wanted while a question or dialog was open is dropped";
}

TEST_F(CommandsTest, ReturnAnswersNoOnlyIfAllMessagesAreToBeErased) {
    const std::pair<bool (QtMessageBoxes::*)(std::string_view), bool> cases[] = {
        {&QtMessageBoxes::Confirm, true}, {&QtMessageBoxes::ConfirmErasing, false}};
    Start();
    for (const auto& [ask, answer] : cases) {
        InDialog([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QtMessageBoxes boxes;
        EXPECT_EQ((boxes.*ask)("Sure?"), answer);
    }
}

TEST_F(CommandsTest, AQuestionStaysInTheMiddleOfItsWindow) {
    QWidget owner;
    owner.resize(200, 100);
    owner.show();
    QtMessageBoxes boxes;
    boxes.SetOwner(&owner);
    InDialog([&owner](QWidget& box) {
        owner.setGeometry(100, 50, 600, 500);  // as when the window system maximises it
        QCoreApplication::processEvents();
        EXPECT_LE((box.frameGeometry().center() - owner.frameGeometry().center()).manhattanLength(), 2);
        box.close();
    });
    boxes.Warn("text");
}

/// A user who has closed the console may not be there any more when the message about a failed save opens.
TEST_F(CommandsTest, TheEndOfTheSessionAnswersTheMessageAboutAFailedSave) {
    StartWithError();
    std::filesystem::remove(folder_ / "Backup.dat");
    std::filesystem::create_directories(folder_.Path() / "Backup.dat" / "in the way");
    bool deaf = false;
    boxes_.WhileAsked = [&] {
        if (boxes_.Shown.size() == 1)
            return;  // This is the question whether to close; the message comes later.
        QMessageBox box(QMessageBox::Warning, {}, QStringLiteral("failed"), QMessageBox::Ok);
        QTimer::singleShot(0, &box, [this] { console_->End(); });
        QTimer::singleShot(5000, &box, [&] {
            deaf = true;
            box.close();
        });
        box.exec();
    };
    CloseByUser();
    EXPECT_TRUE(console_->HasEnded());
    EXPECT_EQ(boxes_.Shown.size(), 2U);
    EXPECT_FALSE(deaf);
}

/// Work that runs when the session ends may ask more questions before it is done.
TEST_F(CommandsTest, ABoxThatOpensAfterTheEndCloses) {
    StartWithError();
    console_->Window().Commands().Run([this] {
        console_->End();
        for (int i = 0; i < 2; ++i) {
            QMessageBox box(QMessageBox::Question, {}, QStringLiteral("?"),
                            QMessageBox::Yes | QMessageBox::No);
            EXPECT_NE(box.exec(), QMessageBox::Yes);
        }
    });
    AWAIT(console_->HasEnded());
}

}  // namespace
}  // namespace tallyhorn
