#include <algorithm>
#include <tuple>

#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/ServerLayout.h"

namespace tallyhorn {
namespace {

const std::string DeleteQuestion = "Are you sure you want to delete the messages you have selected?";
const std::string FilterActive = "You cannot delete messages while a filter is active.";

class MessageCommandsTest : public CommandsFixture {
protected:
    /// Adds rows to the NetBIOS list of information and returns the last one's slot.
    Slot Keep(int count = 1) {
        while (--count > 0)
            Keep();
        return KeepNetBios(NetBiosText({.Type = "Information"}));
    }
};

TEST_F(MessageCommandsTest, DeletesTheSelectedRowsAndReusesTheirSlotsInOrder) {
    Keep(10);
    Received.List(2).Select(3, 3, true);
    Received.List(2).Select(6, 6, true);
    Boxes.WhileAsked = [this] {
        EXPECT_TRUE(TheGate.AdmitPoll()) << "while the question is open";
        EXPECT_EQ(Display.ActiveCalls, (std::vector<std::string>{"active 2", "front 2", "only 2"}));
    };
    Events.Event = [this] { EXPECT_FALSE(TheGate.AdmitPoll()); };
    commands_.DeleteMessages(2, Display.Page);
    EXPECT_EQ(Display.ListCalls, (std::vector<std::string>{"hide 2", "show 2"}));
    EXPECT_EQ(Display.ActiveCalls.back(), "active 2");
    EXPECT_TRUE(TheGate.AdmitPoll());
    EXPECT_EQ(Display.WorkUnderWay, 0);
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "8 NetBIOS Message(s)");
    EXPECT_EQ(Received.List(2).Size(), 8U);
    EXPECT_EQ(Received.NetBios.Messages.Text(4), "");
    for (const Slot slot : {4, 7, 11})
        EXPECT_EQ(Keep(), slot) << "freed slots first, then a new one";
}

TEST_F(MessageCommandsTest, AsksOnlyAboutASelectionThatItMayDelete) {
    const std::tuple<const char*, ViewNumber, MessagePage, bool, std::vector<std::string>> cases[] = {
        {"nothing selected in that list", 1, MessagePage::NetBios, false, {}},
        {"nothing selected in the tree", 6, MessagePage::NetBios, false, {}},
        {"a NetBIOS list behind the syslog page", 2, MessagePage::Syslog, false, {}},
        {"the same list with a view filter", 2, MessagePage::Syslog, true, {FilterActive}},
        {"a NetBIOS list behind the tree", 2, MessagePage::Consolidated, false, {DeleteQuestion}},
        {"a view filter", 2, MessagePage::NetBios, true, {FilterActive}},
        {"its own page", 2, MessagePage::NetBios, false, {DeleteQuestion}},
    };
    Keep(10);
    Received.List(2).Select(0, 9, true);
    Boxes.Answer = false;
    for (const auto& [name, activeView, page, filtered, shown] : cases) {
        Boxes.Shown.clear();
        filter_.Active = filtered;
        Display.Page = page;
        commands_.DeleteMessages(activeView, Display.Page);
        EXPECT_EQ(Boxes.Shown, shown) << name;
    }
    Display.HiddenPage = MessagePage::NetBios;
    commands_.DeleteMessages(2, Display.Page);
    EXPECT_EQ(Boxes.Shown.size(), 1U) << "nobody sees the rows of a hidden page";
    filter_.Active = true;
    commands_.DeleteMessages(2, Display.Page);
    EXPECT_EQ(Boxes.Shown.back(), FilterActive);
    EXPECT_EQ(Received.List(2).Size(), 10U) << "the answer was always No";
    EXPECT_TRUE(Display.ListCalls.empty());
}

/// A delete sleeps for one millisecond after each slice, not after each row.
TEST_F(MessageCommandsTest, ALargeDeletePausesOncePerSlice) {
    Keep(50'000);
    Received.List(2).Select(0, 49'999, true);
    Time.PerLook = std::chrono::microseconds(2);
    commands_.DeleteMessages(2, Display.Page);
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 0);
    EXPECT_GT(Time.Slept, std::chrono::milliseconds(0));
    EXPECT_LT(Time.Slept, std::chrono::milliseconds(500));
    EXPECT_FALSE(Display.Enabled[2]);
    ASSERT_FALSE(Display.Progress.empty());
    EXPECT_TRUE(std::is_sorted(Display.Progress.begin(), Display.Progress.end()));
    EXPECT_LE(Display.Progress.back().first, 50'000U);
    EXPECT_EQ(Display.Progress.back().second, 50'000U);
}

TEST_F(MessageCommandsTest, ClearAllEmptiesTheChannelOfThePage) {
    const std::string eraseNetBios = "Are you sure you want to erase all of the NetBIOS messages received?";
    const std::string eraseSyslog = "Are you sure you want to erase all of the syslog messages received?";
    const std::tuple<MessagePage, bool, bool, std::string, std::size_t, std::size_t> cases[] = {
        {MessagePage::NetBios, true, true, FilterActive, 10, 1},
        {MessagePage::NetBios, false, false, eraseNetBios, 10, 1},
        {MessagePage::Consolidated, true, false, eraseSyslog, 10, 0},
        {MessagePage::NetBios, true, false, eraseNetBios, 0, 0},
    };
    Keep(10);
    KeepSyslog(AlarmRecord());
    for (const auto& [page, answer, filtered, shown, netBiosLeft, syslogLeft] : cases) {
        Boxes = FakeMessageBoxes();
        Boxes.Answer = answer;
        filter_.Active = filtered;
        Display.Page = page;
        commands_.ClearAllMessages(Display.Page);
        EXPECT_EQ(Boxes.Shown, std::vector<std::string>{shown});
        EXPECT_EQ(RowCount(Received.NetBios), netBiosLeft);
        EXPECT_EQ(RowCount(Received.Syslog), syslogLeft);
    }
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "0 NetBIOS Message(s)");
    EXPECT_EQ(Received.Syslog.Messages.UpperBound(), 100);
    EXPECT_EQ(Keep(), 1) << "the queue of free slots is emptied too; slot 0 is never used";
}

TEST(ServerLayout, FramesFitIntoTheirPageWithoutOverlap) {
    for (Twips height = 4'000; height < 40'000; height += 1'111) {
        for (const Twips tabs : {0, 300, 660, 1'500}) {
            SCOPED_TRACE(std::to_string(height) + ", tabs of " + std::to_string(tabs));
            const ServerLayout layout = LayOutServer({height * 3 / 2, height}, tabs);
            EXPECT_EQ(layout.TabControl.Height + ServerLayout::BarsHeight, height);
            EXPECT_GE(layout.FrameTops[0], std::max(tabs, ServerLayout::FramesTop));
            EXPECT_LT(layout.FrameTops[2] + layout.Frame.Height, layout.TabControl.Height);
            EXPECT_LT(layout.FrameTops[0] + layout.ConsolidatedFrame.Height, layout.TabControl.Height);
            EXPECT_LT(layout.ConsolidatedFrame.Width, layout.TabControl.Width);
            EXPECT_LT(layout.Tree.Width, layout.ConsolidatedFrame.Width);
            EXPECT_LT(layout.Tree.Height, layout.ConsolidatedFrame.Height);
        }
    }
    EXPECT_LT(LayOutServer({200, 900}, 0).List.Height, 0) << "too small a window gives a negative size";
    const ColumnWidthArray none{}, saved = {1, 0, 3, 0, 5};
    EXPECT_EQ(ListColumnWidths(none, 10'000), (ColumnWidthArray{2'300, 2'200, 1'500, 2'100, 1'500}));
    EXPECT_EQ(ListColumnWidths(saved, 10'000), saved);
}

}  // namespace
}  // namespace tallyhorn
