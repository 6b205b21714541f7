#include <gmock/gmock.h>

#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>

#include "tests/forms/ConsoleFixture.h"

namespace tallyhorn {
namespace {

class SyslogConsoleTest : public ConsoleFixture {
protected:
    void StartOnTree() {
        StartListening();
        ShowPage(2);
    }
    std::string Current() { return Tree()->currentIndex().data().toString().toStdString(); }
    std::string Text(const std::vector<int>& way) { return Node(way).data().toString().toStdString(); }
    void SendErrors(std::initializer_list<const char*> alarms) {
        for (const char* const alarm : alarms)
            Send(Datagram(alarm, "Error", "pc"));
        Handle();
    }
    void PressInTree(std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            QTest::keyClick(Tree(), key);
    }
    /// Returns the texts in the lists, in the top level of the tree and in the status bar.
    std::string Everything() {
        std::string text = Panel(2).toStdString();
        for (int alarm = 0; alarm < Tree()->model()->rowCount(); ++alarm)
            text += "\n" + Text({alarm});
        for (int element = 0; element < 3; ++element) {
            const QAbstractItemModel& rows = *SyslogList(element)->model();
            for (int cell = 0; cell < rows.rowCount() * 6; ++cell)
                text += "\n" + rows.index(cell / 6, cell % 6).data().toString().toStdString();
        }
        return text;
    }
    /// Deletes the first `count` messages of the list of errors.
    void DeleteFirstSyslogRows(int count) {
        ShowPage(1);
        MessageListView* const list = SyslogList(0);
        list->scrollTo(list->model()->index(0, 0));
        ClickRow(list, 0);
        for (int i = 1; i < count; ++i)
            QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(list, Qt::Key_Delete);
        ShowPage(2);
    }
};

TEST_F(SyslogConsoleTest, ShowsArrivalsInListsTreeAndStatusBar) {
    StartOnTree();
    EXPECT_FALSE(Tree()->isEnabled());
    EXPECT_EQ(Tree()->viewport()->grab().toImage().pixelColor(50, 50),
              Tree()->palette().color(QPalette::Active, QPalette::Base))
        << "unlike a list, the empty tree keeps its colour";
    Send(Datagram("<b>Full</b>" + std::string(60'000, 'y'), "Warning", "pc"));
    Send(Datagram("Empty", "Warning", "pc"));
    Handle();
    EXPECT_EQ(Panel(2), "2 Syslog Message(s)");
    EXPECT_EQ(SyslogList(1)->model()->rowCount(), 2);
    EXPECT_TRUE(SyslogList(1)->isEnabled() && Tree()->isEnabled());
    const QModelIndex full = Node({0});
    EXPECT_TRUE(full.data(Qt::ToolTipRole).toString().startsWith("<p>&lt;b&gt;Full"));
    EXPECT_LT(full.data(Qt::ToolTipRole).toString().size(), 2'000) << "long texts are cut";
    EXPECT_LT(full.data().toString().size(), 2'000);
    EXPECT_EQ(Node({1}).data(Qt::AccessibleTextRole).toString(), "Alarm, Empty ( 1 Event )");
    EXPECT_FALSE(Tree()->isExpanded(full)) << "new groups are closed";
    for (const int row : {1, 0}) {
        const QPoint at = Tree()->visualRect(Node({row})).center();
        QHelpEvent help(QEvent::ToolTip, at, Tree()->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(Tree()->viewport(), &help);
        EXPECT_EQ(QToolTip::text().isEmpty(), row == 1) << "only a line that is cut has a tool tip";
    }
}

TEST_F(SyslogConsoleTest, MovesAndDeletesByKeyboard) {
    StartOnTree();
    for (const char* const computer : {"a", "b", "b", "c"})
        Send(Datagram("Full", "Warning", computer));
    Send(Datagram("Other", "Error", "a"));
    Handle();
    Tree()->setFocus();
    PressInTree({Qt::Key_Home, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Down,
                 Qt::Key_Right, Qt::Key_Right});
    EXPECT_EQ(Current(),
              "System Log  ||  Source: Disk  ||  Event ID: 7  ||  Date Logged: 08/21/2008 2:05:09 PM");
    EXPECT_EQ(Tree()->currentIndex().parent().data().toString(), "B ( 2 Events )");
    PressInTree({Qt::Key_Delete});
    EXPECT_EQ(Tree()->currentIndex().parent().data().toString(), "B ( 1 Events )")
        << "the next leaf is current";
    EXPECT_TRUE(Tree()->selectionModel()->isSelected(Tree()->currentIndex()));
    PressInTree({Qt::Key_Delete});
    EXPECT_EQ(Current(), "C ( 1 Event )") << "the node in the group's place is current";
    EXPECT_EQ(Text({0}), "Full ( 2 Events )");
    PressInTree({Qt::Key_Left, Qt::Key_Left, Qt::Key_Delete});
    EXPECT_EQ(Current(), "Other ( 1 Event )");
    PressInTree({Qt::Key_Delete});
    EXPECT_EQ(Panel(2), "0 Syslog Message(s)");
    EXPECT_FALSE(Tree()->isEnabled());
    Command("delete");
    EXPECT_EQ(boxes_.Shown.size(), 4U) << "there is nothing to delete";
}

TEST_F(SyslogConsoleTest, KeepsOpenGroupsAndPositionThroughArrivalsAndDeletions) {
    StartOnTree();
    for (int i = 0; i < 40; ++i) {
        for (int leaf = 0; leaf < 3; ++leaf)
            Send(Datagram("m" + std::to_string(100 + i), "Error", "pc"));
    }
    Handle();
    for (const int row : {2, 30}) {
        for (const std::vector<int>& way : {std::vector<int>{row}, {row, 0}, {row, 0, 0}})
            Tree()->expand(Node(way));
    }
    Tree()->setCurrentIndex(Node({35}));
    Tree()->verticalScrollBar()->setValue(20);
    const auto onTop = [&] { return Tree()->indexAt(QPoint(1, 1)).data().toString().toStdString(); };
    const std::string top = onTop();
    SendErrors({"a0", "a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "a9", "m102"});
    EXPECT_EQ(onTop(), top);
    EXPECT_EQ(Current(), "m135 ( 3 Events )");
    EXPECT_TRUE(Tree()->isExpanded(Node({12, 0, 0})));
    EXPECT_EQ(Tree()->model()->rowCount(Node({12, 0, 0})), 4);
    EXPECT_EQ(Text({12}), "m102 ( 4 Events )");
    DeleteFirstSyslogRows(5);
    EXPECT_EQ(Text({10}), "m101 ( 1 Events )") << "m100 was removed with its last leaf";
    EXPECT_TRUE(Tree()->isExpanded(Node({11, 0, 0})));
    EXPECT_TRUE(Tree()->isExpanded(Node({39, 0, 0})));
    EXPECT_FALSE(Tree()->isExpanded(Node({12})));
    EXPECT_EQ(Current(), "m135 ( 3 Events )");
}

/// What Delete acts on: the node that is drawn as selected, and nothing if none is.
TEST_F(SyslogConsoleTest, ActsOnTheSelectedNodeAlone) {
    StartOnTree();
    boxes_.Answer = false;
    SendErrors({"m1", "m2"});
    QWidget* const viewport = Tree()->viewport();
    const auto click = [&](QPoint at) { QTest::mouseClick(viewport, Qt::LeftButton, {}, at); };
    const auto openLeaf = [&] {
        for (const std::vector<int>& way : {std::vector<int>{0}, {0, 0}, {0, 0, 0}})
            Tree()->expand(Node(way));
        QCoreApplication::processEvents();
        click(Tree()->visualRect(Node({0, 0, 0, 0})).center());
    };
    const std::tuple<const char*, std::function<void()>, const char*> steps[] = {
        {"the focus alone", [&] { Tree()->setFocus(Qt::TabFocusReason); }, ""},
        {"a leaf", openLeaf, "message"},
        {"empty space", [&] { click(QPoint(50, viewport->height() - 5)); }, ""},
        {"the leaf again", openLeaf, "message"},
        {"a branch that closes around the leaf",
         [&] {
             PressInTree({Qt::Key_Left, Qt::Key_Left});
             openLeaf();
             Tree()->collapse(Node({0}));
         },
         "branch"},
    };
    for (const auto& [what, act, asked] : steps) {
        act();
        boxes_.Shown.clear();
        PressInTree({Qt::Key_Delete});
        const std::string question = boxes_.Shown.empty() ? "" : boxes_.Shown.back();
        EXPECT_THAT(question, ::testing::HasSubstr(asked)) << what;
        EXPECT_EQ(question.empty(), std::string(asked).empty()) << what;
        EXPECT_EQ(Tree()->selectionModel()->hasSelection(), !question.empty()) << what;
    }
    EXPECT_EQ(Current(), "m1 ( 1 Event )") << "the selection moves to the closed branch";
}

/// A deletion elsewhere opens no closed branch, and selects nothing that was not selected.
TEST_F(SyslogConsoleTest, ADeletionElsewhereLeavesClosedBranchesAndTheSelection) {
    StartOnTree();
    SendErrors({"m1", "m1", "m1", "m1", "m2"});
    Tree()->expand(Node({1}));
    for (const bool selected : {false, true}) {
        const auto how = selected ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::Clear;
        Tree()->selectionModel()->setCurrentIndex(Node({1, 0}), how);
        DeleteFirstSyslogRows(1);
        EXPECT_EQ(Tree()->selectionModel()->hasSelection(), selected);
        EXPECT_EQ(Current(), "Error ( 1 Event )");
    }
    Tree()->collapse(Node({1}));
    DeleteFirstSyslogRows(1);
    EXPECT_FALSE(Tree()->isExpanded(Node({1})));
    Tree()->expand(Node({1}));
    Tree()->setCurrentIndex(Node({1}));
    // While another page is shown, arrivals change the positions of nodes before the view gets a signal.
    ShowPage(1);
    SendErrors({"a"});
    DeleteFirstSyslogRows(1);
    EXPECT_TRUE(Tree()->isExpanded(Node({1})) && !Tree()->isExpanded(Node({0})));
    EXPECT_EQ(Current(), "m2 ( 1 Event )");
}

/// Texts with bytes of every value are shown and saved unchanged after one restart and after several.
TEST_F(SyslogConsoleTest, ARestartShowsAndSavesTheSame) {
    StartOnTree();
    std::mt19937 random(4);
    const auto bytes = [&random](const std::string& without) {
        std::string text;
        for (std::size_t n = random() % 12; n <= 12; --n)
            text += static_cast<char>(random());
        std::erase_if(text, [&](char c) { return without.find(c) != std::string::npos; });
        return text;
    };
    for (int i = 0; i < 600; ++i) {
        // After a removal, the tree cuts an alarm's name at the first parenthesis, so these contain none.
        const std::string alarm = bytes("()");
        std::string source = bytes(",");
        if (i % 10 == 0)
            source += "\r\nType Of Event: Error\r\nEventID: 5";
        std::string datagram = "Event raised (";
        datagram.append(alarm).append("): System Log, 1/2/2008 3:04:05, ").append(source);
        Send(datagram.append(", Warning, None, 7, joe, pc, ").append(12, static_cast<char>(i)));
    }
    Handle();
    Tree()->setFocus();
    Tree()->setCurrentIndex(Node({7}));
    PressInTree({Qt::Key_Delete});
    const std::string shown = Everything();
    std::string saved;
    for (int restart = 0; restart < 3; ++restart) {
        console_->End();
        AWAIT(console_->HasEnded());
        const std::string backup = ReadBytes(folder_ / "Backup.dat");
        EXPECT_TRUE(restart == 0 || backup == saved) << restart;
        saved = backup;
        console_.reset();
        Restart();
        ShowPage(2);
        EXPECT_EQ(Everything(), shown) << restart;
    }
    EXPECT_GT(saved.size(), 50'000U);
}

class TakenPortTest : public SyslogConsoleTest {
protected:
    /// Starts while another program uses the port.  The user answers Retry `retries` times and operates the
    /// preferences with `inPreferences` each time, and then answers Cancel.
    void StartTaken(int retries, const std::function<void(QWidget&)>& inPreferences) {
        datagrams_.Taken = {Port};
        boxes_.Shown.clear();
        boxes_.RetriesLeft = retries;
        boxes_.WhileAsked = [this, inPreferences] {
            EXPECT_TRUE(console_->Window().isVisible()) << "the window is shown first";
            if (boxes_.RetriesLeft > 0)
                InDialog(inPreferences);
        };
        StartOnTree();
    }
};

TEST_F(TakenPortTest, RetryTriesTheSamePortAgainOrAnotherOne) {
    StartTaken(2, [this](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Tallyhorn Listener Console Preferences");
        if (boxes_.Shown.size() == 2)
            QTest::keyClicks(dialog.focusWidget(), "5515");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    ASSERT_EQ(boxes_.Shown.size(), 2U);
    EXPECT_NE(boxes_.Shown[0].find("could not bind to UDP port 5514, "), std::string::npos);
    EXPECT_TRUE(datagrams_.Bound.contains(5515));
    EXPECT_EQ(Find<QLabel>("stbMain2")->toolTip(), "Listening on UDP port 5515");
}

TEST_F(TakenPortTest, RunsWithoutSyslogIfThePreferencesAreCancelled) {
    const auto cancel = [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); };
    StartTaken(1, cancel);
    InDialog(cancel);
    Command("configure");
    EXPECT_EQ(boxes_.Shown.size(), 1U);
    EXPECT_FALSE(console_->HasEnded());
    EXPECT_EQ(Find<QLabel>("stbMain2")->toolTip(), "Not listening for syslog messages");
    datagrams_.Taken.clear();
    InDialog([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    Command("configure");
    EXPECT_EQ(Find<QLabel>("stbMain2")->toolTip(), "Listening on UDP port 5514") << "OK tries it again";
}

TEST_F(TakenPortTest, CancelEndsTheConsole) {
    StartTaken(0, nullptr);
    AWAIT(console_->HasEnded());
}

}  // namespace
}  // namespace tallyhorn
