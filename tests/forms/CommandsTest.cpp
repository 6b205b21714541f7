#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include "tests/fakes/FileBytes.h"
#include "tests/forms/Await.h"
#include "tests/forms/ConsoleFixture.h"
#include "views/forms/CommandQueue.h"
#include "views/forms/ConsolidatedTreeView.h"

namespace tallyhorn {
namespace {

constexpr std::uint16_t Port = 5514;

TEST(CommandQueueTest, CommandsWaitForWorkAndDialogsInTheirOrder) {
    CommandQueue queue;
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

/// What the operator's commands do in the whole console.
class CommandsTest : public ConsoleFixture {
protected:
    void StartWithErrors(int count) {
        Start("MessageViews=7\r\nSyslogUDPPort=5514\r\n");
        for (int i = 0; i < count; ++i)
            Arrive("m" + std::to_string(i), "Error");
        Poll();
        AwaitShown();
    }
    void Command(const char* key) { Find<QAction>(key)->trigger(); }
    void SendSyslog(const std::string& computer) {
        ASSERT_TRUE(
            datagrams_.Arrive(Port,
                              "Alarm (Full) Event raised: System Log, 08/21/2008 2:05:09 PM, Disk, Error, "
                              "None, 7, joe, " +
                                  computer + ", text"));
        AWAIT(datagrams_.Bound[Port].Waiting.empty());
        AWAIT(!Find<QTimer>("timArrival")->isActive());
    }
};

TEST_F(CommandsTest, TheFilterCommandHasTwoFaces) {
    StartWithErrors(2);
    const auto faces = [this] {
        const auto* const button = Find<QAction>("filter");
        return (button->isChecked() ? "pressed, " : "") + button->toolTip().toStdString() + ", " +
               Find<QAction>("mnuEdit_Filter")->text().toStdString();
    };
    EXPECT_EQ(faces(), "Apply Filter, &Apply a Filter to Received Messages");
    InDialog([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    Command("filter");
    EXPECT_EQ(faces(), "Apply Filter, &Apply a Filter to Received Messages");
    InDialog([](QWidget& dialog) {
        dialog.findChild<QCheckBox*>(QStringLiteral("chkFilterOn1"))->click();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Command("filter");
    EXPECT_EQ(faces(), "pressed, Remove Filter, &Remove Filter");
    Command("mnuEdit_Filter");
    EXPECT_EQ(faces(), "Apply Filter, &Apply a Filter to Received Alarms");
}

TEST_F(CommandsTest, PreferencesTakeEffectWithoutARestart) {
    StartWithErrors(1);
    Find<QTabWidget>("tabMessageTypes")->setCurrentIndex(0);
    InDialog([](QWidget& dialog) {
        QTest::keyClicks(dialog.focusWidget(), "5520");
        dialog.findChild<QCheckBox*>(QStringLiteral("chkShowTab1"))->click();
        dialog.findChild<QRadioButton*>(QStringLiteral("optDateTime1"))->click();
        auto* const separator = dialog.findChild<QLineEdit*>(QStringLiteral("txtSeperator"));
        separator->setFocus();
        QTest::keyClicks(separator, ".");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Command("configure");
    EXPECT_TRUE(datagrams_.Bound.contains(5520));
    EXPECT_FALSE(Find<QTabWidget>("tabMessageTypes")->isTabVisible(1));
    Arrive("later", "Error");
    Poll();
    AwaitShown();
    EXPECT_EQ(List(0)->model()->index(0, 0).data().toString(), "08/21/2008 2:05:09 PM");
    EXPECT_EQ(List(0)->model()->index(1, 0).data().toString(), "21.08.2008 2:05:09 PM");
    for (const char* const line : {"SyslogUDPPort=5520", "MessageViews=5", "DateTime=1", "Seperator=."})
        EXPECT_NE(SettingsText().find(line), std::string::npos) << line;

    console_->Window().SetColumnWidths({1500, 1500, 1500, 1500, 1500});
    console_->Window().showNormal();
    InDialog([](QWidget& dialog) {
        dialog.findChild<QAbstractButton*>(QStringLiteral("cmdReset"))->click();
        dialog.close();
    });
    Command("configure");
    EXPECT_TRUE(console_->Window().isMaximized());
    EXPECT_EQ(console_->Window().ColumnWidths(), ColumnWidthArray{});
    EXPECT_NEAR(List(0)->ColumnWidth(0), 0.23 * List(0)->width(), 1);
    EXPECT_NE(SettingsText().find("ColWidth5=0"), std::string::npos);
}

TEST_F(CommandsTest, EachPageIsExported) {
    StartWithErrors(1);
    SendSyslog("a");
    SendSyslog("b");
    const char* const names[] = {"Received_NetBIOS_Messages_", "Received_Syslog_Messages_",
                                 "Consolidated_Syslog_Messages_"};
    const std::ptrdiff_t lines[] = {2, 3, 2};
    for (int page = 0; page < 3; ++page) {
        Find<QTabWidget>("tabMessageTypes")->setCurrentIndex(page);
        AwaitShown();
        auto* const tree = Find<ConsolidatedTreeView>("tvwConsolidated");
        tree->setCurrentIndex(tree->model()->index(0, 0));
        for (const Qt::Key key : {Qt::Key_Asterisk, Qt::Key_Down, Qt::Key_Down})  // to the first computer
            QTest::keyClick(tree, key);
        saveDialog_.Answer = folder_ / std::to_string(page);
        Command("exporttext");
        ASSERT_EQ(saveDialog_.Asked.size(), static_cast<std::size_t>(page) + 1);
        EXPECT_EQ(saveDialog_.Asked.back().first.filename().string().rfind(names[page], 0), 0U);
        const std::string written = ReadBytes(folder_ / std::to_string(page));
        EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), lines[page]) << page;
    }
}

TEST_F(CommandsTest, APauseEndsWhileAQuestionStands) {
    StartWithErrors(1);
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
    EXPECT_EQ(Panel(3), "Status: Processing Messages");
}

TEST_F(CommandsTest, TheSameWishWaitsOnce) {
    StartWithErrors(1);
    boxes_.Answer = false;
    console_->Window().Commands().RunAsWork([this] {
        for (int i = 0; i < 3; ++i)
            Command("clear");
        Command("eventviewer");
    });
    AWAIT(boxes_.Shown.size() == 2);
    QCoreApplication::processEvents();
    EXPECT_EQ(boxes_.Shown.size(), 2U);
    Command("clear");
    EXPECT_EQ(boxes_.Shown.size(), 3U) << "asked anew it is a wish anew";
}

TEST_F(CommandsTest, NothingIsAskedAfterTheEndOfTheSession) {
    StartWithErrors(1);
    console_->Window().Commands().RunAsWork([this] {
        Command("clear");
        Command("eventviewer");
        console_->End();
    });
    AWAIT(console_->HasEnded());
    QCoreApplication::processEvents();
    EXPECT_TRUE(boxes_.Shown.empty());
}

/// What was under way asks once more before it is done.
TEST_F(CommandsTest, ABoxThatOpensAfterTheEndClosesByItself) {
    StartWithErrors(1);
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

TEST_F(CommandsTest, OnlyAPortThatWasTriedIsAskedAbout) {
    datagrams_.Taken = {Port};
    boxes_.RetriesLeft = 1;
    const auto cancel = [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); };
    boxes_.WhileAsked = [&] { InDialog(cancel); };
    StartWithErrors(0);
    ASSERT_EQ(boxes_.Shown.size(), 1U);
    InDialog(cancel);
    Command("configure");
    EXPECT_EQ(boxes_.Shown.size(), 1U);
    EXPECT_FALSE(console_->HasEnded());
}

}  // namespace
}  // namespace tallyhorn
