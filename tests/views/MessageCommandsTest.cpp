#include <gtest/gtest.h>

#include <algorithm>

#include "tests/views/CommandsFixture.h"
#include "views/ServerLayout.h"

namespace tallyhorn {
namespace {

class MessageCommandsTest : public CommandsFixture {
protected:
    Slot Keep(MessageChannel& channel, ViewNumber view, const std::string& text = "text") {
        const std::optional<Slot> freed = channel.Messages.TakeFreeSlot();
        const Slot slot = freed ? *freed : channel.Messages.Grow();
        channel.Messages.Put(slot, text);
        channel.Rows.Add(slot, AlarmRecord(), std::nullopt, static_cast<std::int16_t>(view % EventListCount));
        Received.List(view).Add(slot);
        return slot;
    }
    void KeepTen() {
        for (int i = 0; i < 10; ++i)
            Keep(Received.NetBios, 2);
    }
};

TEST_F(MessageCommandsTest, DeletesTheSelectedRowsAndReusesTheirSlotsInOrder) {
    KeepTen();
    Received.ActiveView = 2;
    Received.List(2).Select(3, 3, true);
    Received.List(2).Select(6, 6, true);
    Boxes.WhileAsked = [this] {
        EXPECT_TRUE(Display.Polling) << "the poll goes on while the question stands";
    };
    bool polledMeanwhile = false;
    Events.Event = [&] { polledMeanwhile |= Display.Polling; };
    commands_.DeleteMessages();
    EXPECT_EQ(Boxes.Shown,
              std::vector<std::string>{"Are you sure you want to delete the messages you have selected?"});
    EXPECT_EQ(Display.ListCalls, (std::vector<std::string>{"hide 2", "show 2"}));
    EXPECT_FALSE(polledMeanwhile);
    EXPECT_TRUE(Display.Polling);
    EXPECT_EQ(Display.WorkUnderWay, 0);
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "8 NetBIOS Message(s)");
    EXPECT_EQ(Received.List(2).Size(), 8U);
    EXPECT_EQ(Received.NetBios.Messages.Text(4), "");
    EXPECT_EQ(Keep(Received.NetBios, 2), 4);
    EXPECT_EQ(Keep(Received.NetBios, 2), 7);
    EXPECT_EQ(Keep(Received.NetBios, 2), 11) << "then the store grows";
}

TEST_F(MessageCommandsTest, DeleteDoesNothingWhereItMustNot) {
    const struct {
        const char* Why;
        ViewNumber ActiveView;
        MessagePage Page;
        bool Filtered;
        bool Answer;
        std::vector<std::string> Shown;
    } cases[] = {
        {"nothing selected in that list", 1, MessagePage::NetBios, false, true, {}},
        {"the tree", 6, MessagePage::NetBios, false, true, {}},
        {"a NetBIOS list behind the syslog page", 2, MessagePage::Syslog, false, true, {}},
        {"filtered",
         2,
         MessagePage::NetBios,
         true,
         true,
         {"You cannot delete messages while a filter is active."}},
        {"the user says no",
         2,
         MessagePage::NetBios,
         false,
         false,
         {"Are you sure you want to delete the messages you have selected?"}},
    };
    KeepTen();
    Received.List(2).Select(0, 9, true);
    for (const auto& [why, activeView, page, filtered, answer, shown] : cases) {
        Boxes.Shown.clear();
        Boxes.Answer = answer;
        filter_.Active = filtered;
        Received.ActiveView = activeView;
        Display.Page = page;
        commands_.DeleteMessages();
        EXPECT_EQ(Boxes.Shown, shown) << why;
        EXPECT_EQ(Received.List(2).Size(), 10U) << why;
        EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 10) << why;
        EXPECT_TRUE(Display.ListCalls.empty()) << why;
    }
}

/// The sleep belongs to the slice, not to the row.
TEST_F(MessageCommandsTest, ALargeDeleteHardlySleeps) {
    for (int i = 0; i < 50'000; ++i)
        Keep(Received.NetBios, 0);
    Received.List(0).Select(0, 49'999, true);
    Time.PerLook = std::chrono::microseconds(2);
    commands_.DeleteMessages();
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 0);
    EXPECT_GT(Time.Slept, std::chrono::milliseconds(0));
    EXPECT_LT(Time.Slept, std::chrono::milliseconds(500));
    EXPECT_FALSE(Display.Enabled[0]);
    ASSERT_FALSE(Display.Progress.empty());
    EXPECT_TRUE(std::is_sorted(Display.Progress.begin(), Display.Progress.end()));
    EXPECT_LE(Display.Progress.back().first, 50'000U);
    EXPECT_EQ(Display.Progress.back().second, 50'000U);
}

TEST_F(MessageCommandsTest, ClearAllEmptiesTheChannelOfThePage) {
    const struct {
        MessagePage Page;
        bool Answer;
        bool Filtered;
        const char* Shown;
        std::int32_t NetBiosLeft;
        std::int32_t SyslogLeft;
    } cases[] = {
        {MessagePage::NetBios, true, true, "You cannot delete messages while a filter is active.", 10, 1},
        {MessagePage::NetBios, false, false,
         "Are you sure you want to erase all of the NetBIOS messages received?", 10, 1},
        {MessagePage::Consolidated, true, false,
         "Are you sure you want to erase all of the syslog messages received?", 10, 0},
        {MessagePage::NetBios, true, false,
         "Are you sure you want to erase all of the NetBIOS messages received?", 0, 0},
    };
    KeepTen();
    Keep(Received.Syslog, 3);
    for (const auto& [page, answer, filtered, shown, netBiosLeft, syslogLeft] : cases) {
        Boxes = FakeMessageBoxes();
        Boxes.Answer = answer;
        filter_.Active = filtered;
        Display.Page = page;
        commands_.ClearAllMessages();
        EXPECT_EQ(Boxes.Shown, std::vector<std::string>{shown});
        EXPECT_EQ(Received.NetBios.Messages.MessageCount(), netBiosLeft);
        EXPECT_EQ(Received.Syslog.Messages.MessageCount(), syslogLeft);
        EXPECT_EQ(Received.List(2).Size(), static_cast<std::size_t>(netBiosLeft));
        EXPECT_EQ(Received.List(3).Size(), static_cast<std::size_t>(syslogLeft));
    }
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "0 NetBIOS Message(s)");
    EXPECT_EQ(Received.Syslog.Messages.UpperBound(), 100);
    EXPECT_EQ(Keep(Received.NetBios, 2), 1) << "slot 0 stays empty, freed slots are forgotten";
    EXPECT_EQ(Received.NetBios.Rows.Texts().Size(), 1U);
}

TEST(ServerLayout, FollowsItsRules) {
    const ServerLayout layout = LayOutServer({15'000, 10'795}, 0);
    EXPECT_EQ(layout.TabControl, (TwipsSize{15'000, 10'000}));
    EXPECT_EQ(layout.Frame, (TwipsSize{14'730, 3'183}));
    EXPECT_EQ(layout.List, (TwipsSize{14'250, 2'823}));
    EXPECT_EQ(layout.FrameTops, (std::array<Twips, 3>{360, 3'543, 6'726}));
    EXPECT_EQ(layout.ConsolidatedFrame, (TwipsSize{14'730, 9'550}));
    EXPECT_EQ(layout.Tree, (TwipsSize{14'250, 9'190}));
    EXPECT_LT(LayOutServer({200, 900}, 0).List.Height, 0) << "what does not fit says so";
    const ServerLayout tall = LayOutServer({15'000, 10'795}, 660);
    EXPECT_NEAR(tall.FrameTops[2] + tall.Frame.Height, 9'910, 2)
        << "taller tabs push the frames down, not out";

    EXPECT_EQ(ListColumnWidths({}, 10'000), (ColumnWidthArray{2'300, 2'200, 1'500, 2'100, 1'500}));
    EXPECT_EQ(ListColumnWidths({1, 0, 3, 0, 5}, 10'000), (ColumnWidthArray{1, 0, 3, 0, 5}));
    EXPECT_EQ(ListColumnWidths({0, 7, 7, 7, 7}, 1'000), (ColumnWidthArray{230, 220, 150, 210, 150}));
}

}  // namespace
}  // namespace tallyhorn
