#include <gmock/gmock.h>

#include <QProgressBar>
#include <QToolBar>

#include "tests/forms/ConsoleFixture.h"
#include "tests/support/FakePendingEvents.h"
#include "views/messages/LongWork.h"

namespace tallyhorn {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class CommandBarsTest : public ConsoleFixture {
protected:
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

TEST_F(CommandBarsTest, ButtonsAndMenusGiveTheSameCommands) {
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
TEST_F(CommandBarsTest, LongWorkShowsItsProgress) {
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
    }
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    AWAIT(boxes_.Shown.size() == 1U);
}

}  // namespace
}  // namespace tallyhorn
