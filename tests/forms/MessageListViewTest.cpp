#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimer>
#include <QToolTip>
#include <QWindow>

#include "tests/forms/Await.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {
namespace {

class MessageListViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        view_ = std::make_unique<MessageListView>(list_);
        tester_ = std::make_unique<QAbstractItemModelTester>(
            view_->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        view_->resize(900, 300);
        view_->show();
        AWAIT(view_->windowHandle()->isExposed());
    }
    void TearDown() override { QApplication::setDoubleClickInterval(doubleClickInterval_); }
    void Add(int count) {
        for (int i = 0; i < count; ++i)
            AddAt(next_ * 86'400);
        view_->ShowNewRows();
        AWAIT(!view_->findChild<QTimer*>(QStringLiteral("repaintThrottle"))->isActive());
    }
    void AddAt(std::int64_t seconds) {
        AlarmRecord alarm;
        alarm.DateTime = AlarmDate{seconds};
        alarm.AlarmName = "alarm " + std::to_string(next_ % 3);
        rows_.Add(next_, alarm, EventType::Error);
        list_.Add(next_++);
    }
    std::string Marked() const {
        std::string marked;
        for (const Slot slot : list_.SelectedSlots())
            marked += std::to_string(slot) + " ";
        return marked + "at " + std::to_string(view_->currentIndex().row());
    }
    std::string Date(int row) const { return view_->model()->index(row, 0).data().toString().toStdString(); }
    static void Mouse(QEvent::Type type, QWidget* on, QPoint at) {
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, on->mapToGlobal(at), button, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(on, &event);
    }
    static void Drag(QWidget* on, QPoint from, QPoint to) {
        QTest::mousePress(on, Qt::LeftButton, Qt::NoModifier, from);
        Mouse(QEvent::MouseMove, on, to);
        QTest::mouseRelease(on, Qt::LeftButton, Qt::NoModifier, to);
    }
    QPoint Middle(int row) const { return view_->visualRect(view_->model()->index(row, 0)).center(); }
    void Click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers, Middle(row));
    }
    void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(view_.get(), static_cast<Qt::Key>(key), modifiers);
    }
    /// Types the text as a new search, which does not continue the previous one.
    void Search(const QString& text) {
        const int interval = QApplication::keyboardInputInterval();
        QApplication::setKeyboardInputInterval(0);
        view_->keyboardSearch(text);
        QApplication::setKeyboardInputInterval(interval);
    }
    void ClickHeader(int column) {
        QHeaderView* const header = view_->Header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(header->sectionViewportPosition(column) + 20, header->height() / 2));
    }

    MessageRows rows_;
    MessageList list_{rows_};
    std::unique_ptr<MessageListView> view_;
    std::unique_ptr<QAbstractItemModelTester> tester_;  ///< must be destroyed before the view
    Slot next_ = 0;
    const int doubleClickInterval_ = QApplication::doubleClickInterval();
};

TEST_F(MessageListViewTest, SelectsAsListsDo) {
    Add(8);
    constexpr Qt::KeyboardModifiers Both = Qt::ControlModifier | Qt::ShiftModifier;
    QWidget* const viewport = view_->viewport();
    const std::tuple<const char*, std::function<void()>, const char*> steps[] = {
        {"click", [&] { Click(2); }, "2 at 2"},
        {"shift click", [&] { Click(4, Qt::ShiftModifier); }, "2 3 4 at 4"},
        {"shift click back over the anchor", [&] { Click(1, Qt::ShiftModifier); }, "1 2 at 1"},
        {"control click adds", [&] { Click(6, Qt::ControlModifier); }, "1 2 6 at 6"},
        {"control click takes away", [&] { Click(2, Qt::ControlModifier); }, "1 6 at 2"},
        {"control shift click adds a range", [&] { Click(4, Both); }, "1 2 3 4 6 at 4"},
        {"down", [&] { Press(Qt::Key_Down); }, "5 at 5"},
        {"shift up", [&] { Press(Qt::Key_Up, Qt::ShiftModifier); }, "4 5 at 4"},
        {"control down moves alone", [&] { Press(Qt::Key_Down, Qt::ControlModifier); }, "4 5 at 5"},
        {"control space takes away", [&] { Press(Qt::Key_Space, Qt::ControlModifier); }, "4 at 5"},
        {"shift end", [&] { Press(Qt::Key_End, Qt::ShiftModifier); }, "5 6 7 at 7"},
        {"home", [&] { Press(Qt::Key_Home); }, "0 at 0"},
        {"up at the top", [&] { Press(Qt::Key_Up); }, "0 at 0"},
        {"control a", [&] { Press(Qt::Key_A, Qt::ControlModifier); }, "0 1 2 3 4 5 6 7 at 0"},
        {"right click on a selected row keeps the selection",
         [&] { QTest::mouseClick(viewport, Qt::RightButton, Qt::NoModifier, Middle(3)); },
         "0 1 2 3 4 5 6 7 at 3"},
        {"click below the last row",
         [&] { QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(50, 250)); }, "at 3"},
        {"typing a date", [&] { QTest::keyClicks(view_.get(), "01/05"); }, "4 at 4"},
        {"a new search starts after the current row", [&] { Search("0"); }, "5 at 5"},
        {"typing on starts at it", [&] { QTest::keyClicks(view_.get(), "1"); }, "5 at 5"},
        {"the next match", [&] { Search("01"); }, "6 at 6"},
        {"the first match after the last", [&] { Search("01/01"); }, "0 at 0"},
        {"dragging", [&] { Drag(viewport, Middle(1), Middle(3)); }, "1 2 3 at 3"},
        {"dragging from empty space", [&] { Drag(viewport, QPoint(50, 250), QPoint(50, 200)); }, "at 3"},
        {"dragging from the strip behind the columns",
         [&] { Drag(viewport, QPoint(700, Middle(1).y()), QPoint(700, Middle(4).y())); }, "at 3"},
        {"a click with a small movement", [&] { Drag(viewport, Middle(2), Middle(2) + QPoint(0, 1)); },
         "2 at 2"},
        {"a search for the same day",
         [&] { AddAt(6 * 86'400 + 3'600), view_->ShowNewRows(), Search("01/07"); }, "6 at 6"},
        {"typing a time of day", [&] { QTest::keyClicks(view_.get(), "/1970 1:"); }, "8 at 8"},
        {"rows removed", [&] { Click(2), Click(4, Qt::ShiftModifier), list_.RemoveSelected(); }, "at 2"},
        {"shift click after the first row of the range was removed", [&] { Click(4, Qt::ShiftModifier); },
         "7 at 4"},
        {"the last rows removed", [&] { Press(Qt::Key_End, Qt::ShiftModifier), list_.RemoveSelected(); },
         "at 3"},
        {"shift up", [&] { Press(Qt::Key_Up, Qt::ShiftModifier); }, "5 6 at 2"},
        {"shift click after all rows were removed",
         [&] { list_.Clear(), Add(3), Click(1, Qt::ShiftModifier); }, "10 at 1"},
    };
    for (const auto& [what, act, marked] : steps) {
        act();
        EXPECT_EQ(Marked(), marked) << what;
    }
}

TEST_F(MessageListViewTest, SelectionAndCurrentRowFollowTheirMessages) {
    Add(5);
    Click(1);
    Click(3, Qt::ControlModifier);
    ClickHeader(0);
    EXPECT_EQ(Date(0), "01/05/1970 12:00:00 AM") << "newest first";
    EXPECT_EQ(Marked(), "3 1 at 1");
    Add(3);
    EXPECT_EQ(Marked(), "3 1 at 4") << "rows added above move the others down";
    EXPECT_EQ(view_->Header()->sortIndicatorOrder(), Qt::DescendingOrder);
    list_.RemoveSelected();
    EXPECT_EQ(view_->model()->rowCount(), 6);
    EXPECT_EQ(Marked() + Date(4), "at 401/03/1970 12:00:00 AM") << "the row after the removed one is current";
}

TEST_F(MessageListViewTest, ADoubleClickOpensTheRowOfItsFirstPress) {
    QSignalSpy opened(view_.get(), &MessageListView::Opened);
    for (const bool sorted : {false, true}) {
        Add(100);
        if (sorted)
            ClickHeader(0);
        const int top = view_->verticalScrollBar()->value();
        const QPoint at = Middle(top + 2);
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        const std::optional<Slot> pressed = view_->SelectedSlot();
        Add(3);
        EXPECT_EQ(view_->verticalScrollBar()->value(), top);
        Mouse(QEvent::MouseButtonDblClick, view_->viewport(), at);
        EXPECT_EQ(view_->SelectedSlot(), pressed) << sorted;
        QTest::mouseRelease(view_->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    }
    EXPECT_EQ(opened.count(), 2);
}

TEST_F(MessageListViewTest, KeepsTheNewestOrTheSelectedRowInView) {
    const auto sees = [this](std::size_t row) {
        QCoreApplication::processEvents();
        const QRect place = view_->visualRect(view_->model()->index(static_cast<int>(row), 0));
        return place.top() >= 0 && place.bottom() < view_->viewport()->height();
    };
    Add(100);
    EXPECT_TRUE(sees(99));
    view_->resize(900, 200);
    EXPECT_TRUE(sees(99)) << "a smaller window";
    view_->SetColumnWidth(1, 2000);
    EXPECT_TRUE(sees(99)) << "a horizontal scroll bar";
    ClickHeader(0);
    EXPECT_TRUE(sees(0)) << "sorted without a selected row";
    Click(2);
    ClickHeader(0);
    EXPECT_TRUE(sees(97)) << "sorted with a selected row";
    QApplication::setDoubleClickInterval(0);
    view_->verticalScrollBar()->setValue(40);
    view_->resize(900, 150);
    EXPECT_EQ(view_->verticalScrollBar()->value(), 40) << "the newest row was not in view";
    list_.Remove(std::vector<Slot>{5});
    EXPECT_EQ(view_->verticalScrollBar()->value(), 40) << "nor was the current row";
}

TEST_F(MessageListViewTest, TheFocusIsSeenAtTheTopRowAndADragHeldBelowTheListScrollsOn) {
    Add(100);
    view_->verticalScrollBar()->setValue(40);
    view_->activateWindow();
    AWAIT(view_->isActiveWindow());
    view_->clearFocus();
    view_->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(Marked(), "at 40");
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Marked(), "40 41 at 41");
    view_->verticalScrollBar()->setValue(0);
    QTest::mousePress(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(1));
    Mouse(QEvent::MouseMove, view_->viewport(), {50, view_->viewport()->height() + 5});
    AWAIT(list_.SelectedCount() == 99);
}

TEST_F(MessageListViewTest, OnlyACutCellHasAToolTipAndOnlyAnUnknownTypeNoPicture) {
    for (const EventType type : {EventType::Error, EventType::None, EventType::Unknown}) {
        rows_.Add(next_, AlarmRecord(), type);
        list_.Add(next_++);
    }
    Add(1);
    for (const int role : {Qt::DecorationRole, Qt::AccessibleTextRole}) {
        for (int row = 0; row < 3; ++row)
            EXPECT_EQ(view_->model()->index(row, 0).data(role).isValid(), row < 2) << row;
    }
    for (const int width : {300, 30}) {
        view_->SetColumnWidth(1, width);
        const QPoint at = view_->visualRect(view_->model()->index(3, 1)).center();
        QHelpEvent help(QEvent::ToolTip, at, view_->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(view_->viewport(), &help);
        EXPECT_EQ(QToolTip::text(), width > 100 ? "" : "<p>alarm 0</p>");
    }
}

TEST_F(MessageListViewTest, TheNewestRowIsScrolledIntoViewUnlessTheListIsHeld) {
    QApplication::setDoubleClickInterval(0);
    Add(100);
    QScrollBar* const bar = view_->verticalScrollBar();
    EXPECT_EQ(bar->value(), bar->maximum());
    for (const QEvent::Type end : {QEvent::MouseButtonRelease, QEvent::WindowDeactivate, QEvent::Hide}) {
        bar->setValue(0);
        QTest::mousePress(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(1));
        Add(1);
        EXPECT_EQ(bar->value(), 0) << "a mouse button is down";
        QEvent event(end);
        if (end == QEvent::MouseButtonRelease)
            QTest::mouseRelease(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(1));
        else
            QCoreApplication::sendEvent(view_.get(), &event);
        Add(1);
        EXPECT_EQ(bar->value(), bar->maximum()) << "event " << end;
    }
    bar->setValue(0);
    bar->setSliderDown(true);
    Add(1);
    EXPECT_EQ(bar->value(), 0) << "the scroll bar is held";
    bar->setSliderDown(false);
    AWAIT(bar->value() == bar->maximum());
    ClickHeader(0);
    Add(1);
    EXPECT_EQ(bar->value(), 0) << "the newest row is at the top";
}

TEST_F(MessageListViewTest, TheHiddenColumnStaysShut) {
    QHeaderView* const header = view_->Header();
    for (int column = 0; column < 5; ++column)
        view_->SetColumnWidth(column, 100);
    EXPECT_EQ(header->sectionSize(5), 0);
    const QPoint edge(500, header->height() / 2);
    for (int offset = -3; offset <= 3; ++offset) {
        Drag(header->viewport(), edge + QPoint(offset, 0), edge + QPoint(60, 0));
        QTest::mouseDClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, edge + QPoint(offset, 0));
        EXPECT_EQ(header->sectionSize(5), 0) << offset;
    }
}

}  // namespace
}  // namespace tallyhorn
