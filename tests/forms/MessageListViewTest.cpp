#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <memory>

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
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view_.get()));
    }
    void TearDown() override {
        tester_.reset();
        view_.reset();
    }
    void Add(int count) {
        for (int i = 0; i < count; ++i, ++next_) {
            AlarmRecord alarm;
            alarm.DateTime = AlarmDate{next_ * 86'400};
            alarm.AlarmName = "alarm " + std::to_string(next_ % 3);
            rows_.Add(next_, alarm, EventPicture::Error, CriticalList);
            list_.Add(next_);
        }
        view_->TakeInRows();
        AWAIT(!view_->findChild<QTimer*>(QStringLiteral("pacer"))->isActive());
    }
    std::vector<Slot> Selected() const { return list_.SelectedSlots(); }
    int Current() const { return view_->currentIndex().row(); }
    QPoint Middle(int row) const { return view_->visualRect(view_->model()->index(row, 0)).center(); }
    void Click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers, Middle(row));
    }
    void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(view_.get(), static_cast<Qt::Key>(key), modifiers);
    }
    void ClickHeader(int column) {
        QHeaderView* const header = view_->Header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(header->sectionViewportPosition(column) + 20, header->height() / 2));
    }

    MessageRows rows_;
    MessageList list_{rows_};
    std::unique_ptr<MessageListView> view_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
    Slot next_ = 0;
};

TEST_F(MessageListViewTest, SelectsAsListsDo) {
    Add(8);
    const struct {
        const char* What;
        std::function<void()> Act;
        std::vector<Slot> Selected;
        int Current;
    } steps[] = {
        {"click", [&] { Click(2); }, {2}, 2},
        {"shift click", [&] { Click(4, Qt::ShiftModifier); }, {2, 3, 4}, 4},
        {"shift click back over the anchor", [&] { Click(1, Qt::ShiftModifier); }, {1, 2}, 1},
        {"control click adds", [&] { Click(6, Qt::ControlModifier); }, {1, 2, 6}, 6},
        {"control click takes away", [&] { Click(2, Qt::ControlModifier); }, {1, 6}, 2},
        {"control shift click adds a range",
         [&] { Click(4, Qt::ControlModifier | Qt::ShiftModifier); },
         {1, 2, 3, 4, 6},
         4},
        {"down", [&] { Press(Qt::Key_Down); }, {5}, 5},
        {"shift up", [&] { Press(Qt::Key_Up, Qt::ShiftModifier); }, {4, 5}, 4},
        {"control down moves alone", [&] { Press(Qt::Key_Down, Qt::ControlModifier); }, {4, 5}, 5},
        {"control space takes away", [&] { Press(Qt::Key_Space, Qt::ControlModifier); }, {4}, 5},
        {"shift end", [&] { Press(Qt::Key_End, Qt::ShiftModifier); }, {5, 6, 7}, 7},
        {"home", [&] { Press(Qt::Key_Home); }, {0}, 0},
        {"up at the top", [&] { Press(Qt::Key_Up); }, {0}, 0},
        {"control a", [&] { Press(Qt::Key_A, Qt::ControlModifier); }, {0, 1, 2, 3, 4, 5, 6, 7}, 0},
        {"right click on a selected row keeps the selection",
         [&] { QTest::mouseClick(view_->viewport(), Qt::RightButton, Qt::NoModifier, Middle(3)); },
         {0, 1, 2, 3, 4, 5, 6, 7},
         3},
        {"click below the last row",
         [&] { QTest::mouseClick(view_->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 250)); },
         {},
         3},
        {"type-ahead", [&] { QTest::keyClicks(view_.get(), "01/05"); }, {4}, 4},
    };
    for (const auto& [what, act, selected, current] : steps) {
        act();
        EXPECT_EQ(Selected(), selected) << what;
        EXPECT_EQ(Current(), current) << what;
    }
}

TEST_F(MessageListViewTest, DraggingSelectsARange) {
    Add(8);
    QTest::mousePress(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(1));
    QMouseEvent move(QEvent::MouseMove, Middle(4), view_->viewport()->mapToGlobal(Middle(4)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view_->viewport(), &move);
    QTest::mouseRelease(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(4));
    EXPECT_EQ(Selected(), (std::vector<Slot>{1, 2, 3, 4}));
}

TEST_F(MessageListViewTest, SelectionAndCurrentRowFollowTheirMessages) {
    Add(5);
    Click(1);
    Click(3, Qt::ControlModifier);
    ClickHeader(0);
    EXPECT_EQ(view_->model()->index(0, 0).data().toString(), "01/05/1970 12:00:00 AM") << "newest first";
    EXPECT_EQ(Selected(), (std::vector<Slot>{3, 1}));
    EXPECT_EQ(Current(), 1);
    Add(3);
    EXPECT_EQ(Selected(), (std::vector<Slot>{3, 1})) << "rows that come above move the others down";
    EXPECT_EQ(Current(), 4);
    EXPECT_EQ(view_->Header()->sortIndicatorOrder(), Qt::DescendingOrder);
    list_.RemoveSelected();
    EXPECT_EQ(view_->model()->rowCount(), 6);
    EXPECT_EQ(Current(), 4) << "the row after the one that went";
    EXPECT_EQ(view_->model()->index(4, 0).data().toString(), "01/03/1970 12:00:00 AM");
}

TEST_F(MessageListViewTest, TheNewestRowIsScrolledIntoViewUnlessTheListIsHeld) {
    Add(100);
    QScrollBar* const bar = view_->verticalScrollBar();
    EXPECT_EQ(bar->value(), bar->maximum());
    bar->setValue(0);
    QTest::mousePress(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(1));
    Add(1);
    EXPECT_EQ(bar->value(), 0) << "a mouse button is down";
    QTest::mouseRelease(view_->viewport(), Qt::LeftButton, Qt::NoModifier, Middle(1));
    bar->setSliderDown(true);
    Add(1);
    EXPECT_EQ(bar->value(), 0) << "the scroll bar is held";
    bar->setSliderDown(false);
    Add(1);
    EXPECT_EQ(bar->value(), bar->maximum());
    ClickHeader(0);
    Add(1);
    EXPECT_EQ(bar->value(), 0) << "newest first: the top";
}

TEST_F(MessageListViewTest, TheHiddenColumnStaysShut) {
    QHeaderView* const header = view_->Header();
    for (int column = 0; column < 5; ++column)
        view_->SetColumnWidth(column, 100);
    EXPECT_EQ(header->sectionSize(5), 0);
    const QPoint edge(500, header->height() / 2);
    for (int offset = -3; offset <= 3; ++offset) {
        QTest::mousePress(header->viewport(), Qt::LeftButton, Qt::NoModifier, edge + QPoint(offset, 0));
        QMouseEvent move(QEvent::MouseMove, edge + QPoint(60, 0), header->mapToGlobal(edge + QPoint(60, 0)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(header->viewport(), &move);
        QTest::mouseRelease(header->viewport(), Qt::LeftButton, Qt::NoModifier, edge + QPoint(60, 0));
        QTest::mouseDClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, edge + QPoint(offset, 0));
        EXPECT_EQ(header->sectionSize(5), 0) << offset;
    }
}

TEST_F(MessageListViewTest, TellsOfTouchesReleasesAndTheDeleteKey) {
    Add(2);
    QSignalSpy touched(view_.get(), &MessageListView::Touched);
    QSignalSpy released(view_.get(), &MessageListView::MouseReleased);
    QSignalSpy deletion(view_.get(), &MessageListView::DeleteRequested);
    Click(0);
    EXPECT_EQ(touched.count(), 1);
    EXPECT_EQ(released.count(), 1);
    Press(Qt::Key_Delete);
    EXPECT_EQ(deletion.count(), 1);
    ClickHeader(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(released.count(), 2) << "the header is part of the list";
}

}  // namespace
}  // namespace tallyhorn
