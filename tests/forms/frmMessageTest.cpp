#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>

#include "tests/forms/ConsoleFixture.h"
#include "tests/forms/ControlChecks.h"
#include "tests/views/CommandsFixture.h"
#include "ui/AnsiString.h"
#include "views/forms/frmMessage.h"

namespace tallyhorn {
namespace {

class frmMessageTest : public ConsoleFixture {
protected:
    /// Lets a NetBIOS error arrive for each of `minutes`; the minute is part of its source and its date.
    void ArriveAt(std::initializer_list<int> minutes) {
        for (const int minute : minutes) {
            const std::string name = "m0" + std::to_string(minute);
            ArriveText(NetBiosText({.Description = "\r\n" + name, .Source = name}).replace(21, 1, name, 2));
        }
        Receive({});
    }
    void SendDescription(const std::string& computer, const std::string& description) {
        Send(Datagram("Full", "Error", computer, description));
        Handle();
    }

    /// Returns the open window, or nullptr if none is open.
    frmMessage* Window() {
        for (auto* const window : console_->Window().findChildren<frmMessage*>())
            if (window->isVisible())
                return window;
        return nullptr;
    }
    QAbstractButton* Button(const char* name) { return In<QAbstractButton>(*Window(), name); }
    QPlainTextEdit* Box() { return Window()->findChild<QPlainTextEdit*>(QStringLiteral("txtMessage")); }
    /// Returns the last line of the shown text, with "^" and "v" for the enabled arrows; "-" if no window is
    /// open.
    std::string Shown() {
        if (Window() == nullptr)
            return "-";
        const std::string text = Box()->toPlainText().toStdString();
        return text.substr(text.rfind('\n') + 1) + (Button("cmdUp")->isEnabled() ? "^" : "") +
               (Button("cmdDown")->isEnabled() ? "v" : "");
    }
    // Each of the following functions returns what is shown afterwards.
    std::string Click(const char* button) {
        QTest::mouseClick(Button(button), Qt::LeftButton);
        return Shown();
    }
    /// Sends the key to the focused control.
    std::string Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QWidget* const focus = Window()->focusWidget();
        QTest::keyClick(focus != nullptr ? focus : Window(), key, modifiers);
        return Shown();
    }
    std::string View(int page) {
        ShowPage(page);
        Command("view");
        return Shown();
    }
    std::string Open(QAbstractItemView* view, QModelIndex entry, Qt::MouseButton button = Qt::LeftButton) {
        const QPoint at = view->visualRect(entry).center();
        QTest::mouseClick(view->viewport(), button, Qt::NoModifier, at);
        QTest::mouseDClick(view->viewport(), button, Qt::NoModifier, at);
        return Shown();
    }
    std::string Open(MessageListView* list, int row, Qt::MouseButton button = Qt::LeftButton) {
        return Open(list, list->model()->index(row, 0), button);
    }
    std::string OpenNode(const std::vector<int>& path) {
        for (std::ptrdiff_t depth = 1; depth < std::ssize(path); ++depth) {
            Tree()->expand(Node({path.begin(), path.begin() + depth}));
            QCoreApplication::processEvents();
        }
        return Open(Tree(), Node(path));
    }
    void SelectSomeText() {
        QTextCursor some = Box()->textCursor();
        some.setPosition(3, QTextCursor::KeepAnchor);
        Box()->setTextCursor(some);
    }
};

TEST_F(frmMessageTest, OpensOneWindowByMouseKeyAndCommand) {
    Start();
    ArriveAt({1, 2, 3});
    EXPECT_EQ(View(0), "-") << "nothing is selected";
    EXPECT_EQ(Open(List(0), 1, Qt::RightButton), "-");
    EXPECT_EQ(Open(List(0), 1), "m02^v");
    const frmMessage* const first = Window();
    EXPECT_TRUE(Box()->isReadOnly() && Box() == first->focusWidget() && !first->isModal());
    ExpectSoundControls(*Window());
    EXPECT_FALSE(first->frameGeometry().intersects(List(0)->CurrentRowOnScreen()));
    QTest::keyClick(List(0), Qt::Key_Down);
    EXPECT_EQ(Shown(), "m02^v") << "selecting a row opens nothing";
    QTest::keyClick(List(0), Qt::Key_Return);
    EXPECT_EQ(Shown(), "m03^");
    EXPECT_EQ(Window(), first);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        EXPECT_EQ(Press(key, Qt::NoModifier), "-");
        ClickRow(List(0), 0);
        EXPECT_EQ(View(0), "m01v");
    }
    EXPECT_EQ(Click("cmdExit"), "-");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(console_->Window().findChildren<frmMessage*>().isEmpty());
}

/// The View command uses the list that was touched last; on the syslog page, a touched NetBIOS list means the
/// syslog list of the same type.
TEST_F(frmMessageTest, TheCommandGoesByPageAndTouchedView) {
    StartListening();
    ArriveAt({1});
    SendDescription("pc", "what");
    ClickRow(List(0), 0);
    EXPECT_EQ(View(1), "-") << "the syslog list of errors has no selected row";
    ClickRow(SyslogList(0), 0);
    EXPECT_EQ(View(0), "what") << "the list touched last, though on another page";
    ClickRow(List(0), 0);
    EXPECT_EQ(View(0), "m01");
    EXPECT_EQ(View(1), "what");
    Window()->close();
    EXPECT_EQ(View(2), "-") << "no node is selected";
    EXPECT_EQ(OpenNode({0, 0, 0}), "-") << "a group only opens and closes";
    EXPECT_EQ(View(0), "-") << "the tree was touched last, which is no list";
    ShowPage(2);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Return})
        QTest::keyClick(Tree(), key);
    EXPECT_EQ(Shown(), "what");
    ClickRow(SyslogList(0), 0);
    EXPECT_EQ(View(2), "what");
    Command("delete");
    EXPECT_EQ(boxes_.Shown.back(), "Are you sure you want to delete the message you have selected?")
        << "opening a message in the tree makes the tree the active view";
}

TEST_F(frmMessageTest, StepsAndTheListsSelectionFollowEachOther) {
    Start();
    ArriveAt({1, 2, 3, 4, 5});
    Open(List(0), 1);
    const auto shownAfterClick = [this](int row) {
        ClickRow(List(0), row);
        QCoreApplication::processEvents();
        return Shown();
    };
    EXPECT_EQ(shownAfterClick(4), "m02^") << "the last row is selected";
    EXPECT_EQ(shownAfterClick(2), "m02^v");
    EXPECT_EQ(Press(Qt::Key_Down), "m04^v");
    EXPECT_EQ(List(0)->SelectedSlot(), 4);
    EXPECT_EQ(shownAfterClick(1), "m04^v");
    EXPECT_EQ(Click("cmdUp"), "m01v");
    EXPECT_EQ(Press(Qt::Key_Down), "m02^v");
    List(0)->selectAll();
    EXPECT_EQ(Press(Qt::Key_Up), "m01v") << "the shown row is selected too";
    EXPECT_EQ(Open(List(0), 4), "m05^");
    ArriveAt({6});
    EXPECT_EQ(Shown(), "m05^v");
    SelectSomeText();
    ArriveAt({7});
    EXPECT_TRUE(Box()->textCursor().hasSelection()) << "an arrival must not reload the text";
    Press(Qt::Key_Down);
    Button("cmdDown")->setFocus();
    EXPECT_EQ(Press(Qt::Key_Space, Qt::NoModifier), "m07^");
    EXPECT_EQ(Window()->focusWidget(), Box()) << "the focus must not move on to Delete";
    QHeaderView* const header = List(0)->Header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, header->height() / 2));
    EXPECT_EQ(Shown(), "m07v") << "newest first";
    ClickRow(List(0), 0);
    QTest::keyClick(List(0), Qt::Key_Delete);
    EXPECT_EQ(Shown(), "m06v");
    Command("clear");
    EXPECT_EQ(Shown(), "-");
}

TEST_F(frmMessageTest, KeysActOnReleaseWithExactlyControl) {
    Start();
    ArriveAt({1, 2, 3});
    Open(List(0), 1);
    boxes_.Answer = false;
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Delete, Qt::Key_C, Qt::Key_S}) {
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(Qt::ShiftModifier), Qt::ControlModifier | Qt::ShiftModifier,
              Qt::ControlModifier | Qt::AltModifier, Qt::ControlModifier | Qt::MetaModifier,
              Qt::KeyboardModifiers(Qt::NoModifier)})
            EXPECT_EQ(Press(key, modifiers), "m02^v") << key;
        QTest::keyPress(Box(), key, Qt::ControlModifier);
        QKeyEvent repeated(QEvent::KeyRelease, key, Qt::ControlModifier, QString(), true);
        QCoreApplication::sendEvent(Box(), &repeated);
        EXPECT_EQ(Shown(), "m02^v") << key;
    }
    EXPECT_TRUE(boxes_.Shown.empty());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
    Press(Qt::Key_S);
    EXPECT_EQ(boxes_.Shown, std::vector<std::string>{
                                "Are you sure you want to suppress future occurrences of this event?"});
    EXPECT_EQ(Press(Qt::Key_Delete), "m02^v") << "the user answered No";
    EXPECT_EQ(boxes_.Shown.size(), 2U);
    SelectSomeText();
    Press(Qt::Key_C);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("\r\nm02")) << "the whole text is copied";
    boxes_.Answer = true;
    InDialog([this](QWidget& dialog) {
        EXPECT_EQ(In<QLineEdit>(dialog, "txtSource")->text(), "m02");
        EXPECT_EQ(dialog.parentWidget(), Window());
        dialog.close();
    });
    EXPECT_EQ(Press(Qt::Key_S), "m02^v") << "suppressing deletes nothing";
    EXPECT_EQ(Press(Qt::Key_Delete), "m03^");
}

TEST_F(frmMessageTest, DeletesWhatItShowsWhateverIsSelectedElsewhere) {
    StartListening();
    ArriveAt({1, 2, 3});
    SendDescription("pc", "what");
    Open(List(0), 0);
    List(0)->selectAll();
    ShowPage(1);
    ClickRow(SyslogList(0), 0);
    EXPECT_EQ(Click("cmdDelete"), "m02v");
    EXPECT_EQ(List(0)->SelectedSlot(), 2);
    EXPECT_EQ(Panel(1) + Panel(2), "2 NetBIOS Message(s)1 Syslog Message(s)");
    EXPECT_EQ(Find<QTabWidget>("tabMessageTypes")->currentIndex(), 0);
    Click("cmdDown");
    EXPECT_EQ(Click("cmdDelete"), "m02") << "one message is left";
    List(0)->setFocus();
    EXPECT_EQ(Click("cmdDelete"), "-");
    EXPECT_EQ(qobject_cast<MessageListView*>(console_->Window().focusWidget()), nullptr)
        << "the next Delete key must not act on another list";
    EXPECT_EQ(boxes_.Shown.size(), 3U);
}

TEST_F(frmMessageTest, StepsAndDeletesInTheTree) {
    StartListening();
    for (const char* const description : {"a", "b", "c"})
        SendDescription("pc", description);
    SendDescription("other", "d");
    ShowPage(2);
    EXPECT_EQ(OpenNode({0, 0, 1, 1}), "b^v");
    Window()->close();
    const QPoint at = Tree()->visualRect(Node({0, 0, 1, 1})).topLeft() + QPoint(-3, 3);
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    Send(Datagram("A", "Error", "pc"));
    Handle();
    QTest::mouseDClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    EXPECT_EQ(Shown(), "b^v") << "the first press was left of this leaf, which an arrival moved down";
    EXPECT_EQ(Press(Qt::Key_Down), "c^") << "steps stay within one computer";
    EXPECT_EQ(Tree()->currentIndex().row(), 2);
    ShowPage(0);
    SendDescription("pc", "e");
    EXPECT_EQ(Press(Qt::Key_Down), "e^") << "a leaf that the hidden tree has not announced yet";
    EXPECT_EQ(Press(Qt::Key_Delete), "c^") << "the previous leaf is shown";
    EXPECT_EQ(Tree()->currentIndex().row(), 2);
}

TEST_F(frmMessageTest, CommandsWaitForTheBatch) {
    Start();
    ArriveAt({1, 2});
    Open(List(0), 0);
    clock_.PerLook = std::chrono::milliseconds(4);
    const auto during = [this](const std::function<std::string()>& act) {
        for (int i = 0; i < 20; ++i)
            ArriveText("x");
        QTimer::singleShot(0, &console_->Window(), [this, act] { EXPECT_EQ(Shown(), act()); });
        Poll();
    };
    during([this] { return Click("cmdDelete"); });
    EXPECT_EQ(Panel(1), "22 NetBIOS Message(s)");
    AWAIT(Panel(1) == QStringLiteral("21 NetBIOS Message(s)"));
    during([this] { return Press(Qt::Key_Escape, Qt::NoModifier); });
    AWAIT(Window() == nullptr);
}

TEST_F(frmMessageTest, ClosesWithTheMainWindow) {
    Start();
    ArriveAt({1});
    Open(List(0), 0);
    boxes_.Answer = false;
    CloseByUser();
    EXPECT_EQ(Shown(), "m01") << "the user answered No";
    console_->End();
    AWAIT(console_->HasEnded());
    EXPECT_EQ(Shown(), "-");
    Restart();
    ArriveAt({2});
    Open(List(0), 0);
    console_.reset();
    for (const QWidget* const left : QApplication::topLevelWidgets())
        EXPECT_FALSE(left->isVisible()) << left->objectName().toStdString();
}

/// Tests the detail window without a main window.
class frmMessageAloneTest : public CommandsFixture {
protected:
    QWidget main_;
    CommandQueue queue_{TheGate};
    frmMessage window_{{Context, queue_, [](ViewNumber, Slot) {}, [](ViewNumber) {}, [](QWidget&) {}},
                       &main_};
};

TEST_F(frmMessageAloneTest, ShowsAndCopiesAnyText) {
    using namespace std::string_literals;
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    const QString longWord(60'000, 'W');
    const std::tuple<std::string, std::optional<QString>, QString, bool> cases[] = {
        {"before\0behind"s, QStringLiteral("before·behind"), "beforebehind", false},
        {longWord.toStdString(), longWord, longWord, false},
        {"", "", "", false},
        {"a\r\nb\nc\rd\r\n", "a\nb\nc\nd\n", "a\r\nb\nc\rd\r\n", false},
        {"Name:\tjoe\r\nGroup:\tall", "Name:\tjoe\nGroup:\tall", "Name:\tjoe\r\nGroup:\tall", true},
        {everyByte, std::nullopt, ToQString(everyByte), false}};
    for (const auto& [text, shown, copied, fixed] : cases) {
        AlarmRecord parsed;
        window_.InitForm(0, Received.KeepNetBiosMessage(text, parsed, true));
        window_.ShowBeside(QRect());
        const auto* const box = window_.findChild<QPlainTextEdit*>();
        EXPECT_EQ(box->toPlainText(), shown.value_or(box->toPlainText()));
        EXPECT_EQ(QFontInfo(box->font()).fixedPitch(), fixed) << text.substr(0, 20);
        EXPECT_EQ(box->horizontalScrollBar()->maximum(), 0) << "lines are wrapped";
        QTest::keyClick(&window_, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), copied);
    }
}

TEST_F(frmMessageAloneTest, IsPlacedOnTheScreenAboveOrBelowTheEntry) {
    const QRect screen = main_.screen()->availableGeometry();
    for (int top = screen.top(); top < screen.bottom() - 20; top += 35) {
        const QRect entry(screen.left() + 30, top, screen.width(), 20);
        window_.hide();
        window_.ShowBeside(entry);
        EXPECT_FALSE(window_.frameGeometry().intersects(entry)) << top;
        EXPECT_TRUE(screen.contains(window_.frameGeometry())) << top;
        const QRect place = window_.frameGeometry();
        window_.ShowBeside(place.translated(0, place.height() + 10).intersected(screen));
        EXPECT_EQ(window_.frameGeometry(), place) << "a window that does not cover the entry is not moved";
    }
}

}  // namespace
}  // namespace tallyhorn
