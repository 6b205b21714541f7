#include <QHeaderView>
#include <cstdio>

#include "tests/forms/ConsoleFixture.h"
#include "views/forms/frmMessage.h"

namespace tallyhorn {
namespace {

/// Operates a whole console at random while 1,000 datagrams and 500 texts a second arrive.  Gestures come
/// from timers, so that they also occur between the slices of long work.
///
/// TALLYHORN_STORM_SECONDS sets the length of the storm.  TALLYHORN_STORM_SEED repeats the gestures of an
/// earlier storm, though not its timing.
class StormTest : public ConsoleFixture {
protected:
    StormTest() {
        std::printf("TALLYHORN_STORM_SEED=%d\n", seed_);
        std::fflush(stdout);  // a crash would lose it
        clock_.PerLook = std::chrono::milliseconds(1);
        saveDialog_.Answer = folder_ / "export.txt";
        boxes_.WhileAsked = [this] {
            asked_ = true;
            QTest::qWait(Below(20));
            asked_ = false;
            boxes_.Answer = !OneIn(3);
        };
        feeds_.callOnTimeout([this] { Feed(); });
        gestures_.setSingleShot(true);  // a repeating timer would not fire while a gesture's dialog is open
        gestures_.callOnTimeout([this] { Act(); });
    }

    /// Lets notifications arrive and makes gestures for two seconds.  Afterwards only dialogs are cancelled,
    /// which a command that had to wait may still open.
    void Rage() {
        settling_ = false;
        feeds_.start(20);
        gestures_.start(0);
        QTest::qWait(2000);
        feeds_.stop();
        settling_ = true;
        QTest::qWait(50);
    }
    /// Ends a drag, the view filter and a pause, and waits until the views show all kept messages.
    void Settle() {
        Release();
        AWAIT(QApplication::activeModalWidget() == nullptr);
        const QAction* const filter = Find<QAction>("filter");
        if (filter->isChecked())
            Command("filter");
        AWAIT(!filter->isChecked());
        if (Panel(3).contains(QStringLiteral("Paused")))
            Command("pause");
        ASSERT_NO_FATAL_FAILURE(Handle());
        AWAIT(mailslots_.ByName["TallyhornEngine"].Waiting.empty());
        for (int page = 0; page < 3; ++page) {
            ShowPage(page);
            QCoreApplication::processEvents();
            ASSERT_NO_FATAL_FAILURE(AwaitShown());
        }
    }
    /// Compares the numbers of kept messages, of rows and of the messages that the tree counts.
    void Check() {
        int netBiosRows = 0, syslogRows = 0, knownRows = 0, counted = 0;
        for (int element = 0; element < 3; ++element) {
            netBiosRows += List(element)->model()->rowCount();
            const QAbstractItemModel& rows = *SyslogList(element)->model();
            syslogRows += rows.rowCount();
            for (int row = 0; row < rows.rowCount(); ++row)
                knownRows += rows.index(row, 1).data().toString().startsWith('k') ? 1 : 0;
        }
        EXPECT_EQ(Panel(1), QString::number(netBiosRows) + " NetBIOS Message(s)");
        EXPECT_EQ(Panel(2), QString::number(syslogRows) + " Syslog Message(s)");
        for (int alarm = 0; alarm < Tree()->model()->rowCount(); ++alarm)
            counted += CountOf(Node({alarm}));
        EXPECT_EQ(counted, knownRows);
        mostRows_ = std::max(mostRows_, std::min(netBiosRows, syslogRows));
    }
    /// Returns the number of leaves below the node, and compares it with the count of each group.
    int Leaves(const QModelIndex& node) {
        QAbstractItemModel& model = *Tree()->model();
        if (model.flags(node).testFlag(Qt::ItemNeverHasChildren))
            return 1;
        if (model.canFetchMore(node))
            model.fetchMore(node);
        int leaves = 0;
        for (int row = 0; row < model.rowCount(node); ++row)
            leaves += Leaves(model.index(row, 0, node));
        EXPECT_EQ(leaves, CountOf(node)) << node.data().toString().toStdString();
        return leaves;
    }

    const int seed_ =
        qEnvironmentVariable("TALLYHORN_STORM_SEED", QString::number(std::random_device()() >> 1)).toInt();
    int mostRows_ = 0;

private:
    int Below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
    bool OneIn(int number) { return Below(number) == 0; }
    template <class Value>
    Value AnyOf(std::initializer_list<Value> values) {
        return values.begin()[Below(static_cast<int>(values.size()))];
    }
    static int CountOf(const QModelIndex& group) {  // "name ( 12 Events )"
        return group.data().toString().section(' ', -3, -3).toInt();
    }
    QPoint AnyPointIn(const QWidget* widget) {
        return {Below(std::max(1, widget->width())), Below(std::max(1, widget->height()))};
    }
    Qt::KeyboardModifiers AnyModifiers() {
        return AnyOf<Qt::KeyboardModifiers>({{}, {}, Qt::ShiftModifier, Qt::ControlModifier});
    }

    void Feed() {
        for (int i = 0; i < 30; ++i) {
            const std::string type =
                AnyOf({"Information", "Warning", "error", "failureaudit", "Success Audit", "Critical", ""});
            const bool hasLeaf = !type.empty() && type != "Critical";
            const std::string alarm = (hasLeaf ? "k" : "u") + std::to_string(Below(60));
            if (i < 10)
                Arrive(alarm, type);
            else
                Send(OneIn(30) ? "session opened for user root: x"
                               : Datagram(alarm, type, "pc" + std::to_string(Below(20))));
        }
    }
    /// Makes one gesture, in the open dialog if there is one.
    void Act() {
        gestures_.start(Below(8));
        if (asked_ || console_ == nullptr)
            return;
        auto* const details = console_->Window().findChild<frmMessage*>();
        if (QWidget* const dialog = QApplication::activeModalWidget())
            return settling_ ? QTest::keyClick(dialog, Qt::Key_Escape) : Operate(*dialog, 4);
        if (settling_)
            return;
        if (dragged_ != nullptr)
            return OneIn(2) ? Release() : Drag();
        const int page = Find<QTabWidget>("tabMessageTypes")->currentIndex();
        MessageListView* const list = page == 0 ? List(Below(3)) : SyslogList(Below(3));
        QAbstractItemView* const view = page == 2 ? static_cast<QAbstractItemView*>(Tree()) : list;
        QWidget* const header = page == 2 ? view->viewport() : list->Header()->viewport();
        switch (Below(10)) {
            case 0:
                return ShowPage(Below(3));
            case 1:
                return Command(AnyOf({"view", "delete", "delete", "eventviewer", "filter", "pause",
                                      "exporttext", OneIn(5) ? "clear" : "view"}));
            case 2:
                return details != nullptr && details->isVisible() ? Operate(*details, 20) : void();
            case 3:
                return QTest::mouseClick(header, Qt::LeftButton, {}, AnyPointIn(header));
            case 4:
            case 5:
                return PressKey(*view);
            default:
                return UseMouse(view->viewport());
        }
    }
    void PressKey(QAbstractItemView& view) {
        view.setFocus();
        QTest::keyClick(&view,
                        AnyOf({Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home,
                               Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Space, Qt::Key_Return,
                               Qt::Key_0, Qt::Key_Delete, Qt::Key_Delete, Qt::Key_A, Qt::Key_Tab}),
                        AnyModifiers());
    }
    void UseMouse(QWidget* viewport) {
        const QPoint point = AnyPointIn(viewport);
        if (OneIn(4))
            return QTest::mouseDClick(viewport, Qt::LeftButton, {}, point);
        QTest::mousePress(viewport, Qt::LeftButton, AnyModifiers(), point);
        dragged_ = viewport;
    }
    /// Moves the mouse, also beyond the view.
    void Drag() {
        const QPoint point = AnyPointIn(dragged_) + QPoint(0, AnyOf({-300, 0, 0, 300}));
        QMouseEvent move(QEvent::MouseMove, point, dragged_->mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(dragged_, &move);
    }
    void Release() {
        if (QWidget* const viewport = std::exchange(dragged_, nullptr))
            QTest::mouseRelease(viewport, Qt::LeftButton, {}, AnyPointIn(viewport));
    }
    /// Clicks a button of the dialog, or cancels it one time in `cancels`.
    void Operate(QWidget& dialog, int cancels) {
        QList<QAbstractButton*> buttons = dialog.findChildren<QAbstractButton*>();
        erase_if(buttons, [](auto* button) { return !button->isVisible() || !button->isEnabled(); });
        if (buttons.isEmpty() || OneIn(cancels))
            QTest::keyClick(&dialog, OneIn(3) ? Qt::Key_Return : Qt::Key_Escape);
        else
            QTest::mouseClick(buttons[Below(static_cast<int>(buttons.size()))], Qt::LeftButton);
    }

    std::mt19937 random_{static_cast<unsigned>(seed_)};
    bool asked_ = false;     ///< a question is open, which blocks all windows
    bool settling_ = false;  ///< no gestures are made, but dialogs are cancelled
    QPointer<QWidget> dragged_;
    QTimer feeds_, gestures_;
};

TEST_F(StormTest, TheViewsShowExactlyTheKeptMessages) {
    SCOPED_TRACE("TALLYHORN_STORM_SEED=" + std::to_string(seed_));
    StartListening();
    const QDeadlineTimer end(
        std::chrono::seconds(qEnvironmentVariable("TALLYHORN_STORM_SECONDS", "3").toInt()));
    while (!end.hasExpired() && !HasFailure()) {
        Rage();
        ASSERT_NO_FATAL_FAILURE(Settle());
        Check();
    }
    for (int alarm = 0; alarm < Tree()->model()->rowCount(); ++alarm)
        Leaves(Node({alarm}));
    EXPECT_GT(mostRows_, 100) << "too few messages to test anything";
}

}  // namespace
}  // namespace tallyhorn
