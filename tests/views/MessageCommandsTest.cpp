#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/ServerLayout.h"

namespace tallyhorn {
namespace {

class MessageCommandsTest : public CommandsFixture {
protected:
    /// A row of the NetBIOS list of information.
    Slot Keep() { return KeepNetBios(NetBiosText({.Type = "Information"})); }
    void KeepTen() {
        for (int i = 0; i < 10; ++i)
            Keep();
    }

    const std::string deleteQuestion_ = "Are you sure you want to delete the messages you have selected?";
    const std::string filterActive_ = "You cannot delete messages while a filter is active.";
};

TEST_F(MessageCommandsTest, DeletesTheSelectedRowsAndReusesTheirSlotsInOrder) {
    KeepTen();
    Received.List(2).Select(3, 3, true);
    Received.List(2).Select(6, 6, true);
    Boxes.WhileAsked = [this] { EXPECT_TRUE(TheGate.AdmitPoll()) << "while the question stands"; };
    Events.Event = [this] { EXPECT_FALSE(TheGate.AdmitPoll()); };
    commands_.DeleteMessages(2);
    EXPECT_EQ(Boxes.Shown, std::vector<std::string>{deleteQuestion_});
    EXPECT_EQ(Display.ListCalls, (std::vector<std::string>{"hide 2", "show 2"}));
    EXPECT_TRUE(TheGate.AdmitPoll());
    EXPECT_EQ(Display.WorkUnderWay, 0);
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "8 NetBIOS Message(s)");
    EXPECT_EQ(Received.List(2).Size(), 8U);
    EXPECT_EQ(Received.NetBios.Messages.Text(4), "");
    for (const Slot slot : {4, 7, 11})
        EXPECT_EQ(Keep(), slot) << "the freed ones, then the store grows";
}

TEST_F(MessageCommandsTest, DeleteDoesNothingWhereItMustNot) {
    const struct {
        const char* Why;
        ViewNumber ActiveView;
        MessagePage Page;
        bool Filtered;
        std::vector<std::string> Shown;
    } cases[] = {
        {"nothing selected in that list", 1, MessagePage::NetBios, false, {}},
        {"the tree", 6, MessagePage::NetBios, false, {}},
        {"a NetBIOS list behind the syslog page", 2, MessagePage::Syslog, false, {}},
        {"the same, filtered", 2, MessagePage::Syslog, true, {filterActive_}},
        {"filtered", 2, MessagePage::NetBios, true, {filterActive_}},
        {"the user says no", 2, MessagePage::NetBios, false, {deleteQuestion_}},
    };
    KeepTen();
    Received.List(2).Select(0, 9, true);
    Boxes.Answer = false;
    for (const auto& [why, activeView, page, filtered, shown] : cases) {
        Boxes.Shown.clear();
        filter_.Active = filtered;
        Display.Page = page;
        commands_.DeleteMessages(activeView);
        EXPECT_EQ(Boxes.Shown, shown) << why;
        EXPECT_EQ(Received.List(2).Size(), 10U) << why;
    }
    EXPECT_TRUE(Display.ListCalls.empty());
}

/// The sleep belongs to the slice, not to the row.
TEST_F(MessageCommandsTest, ALargeDeleteHardlySleeps) {
    for (int i = 0; i < 50'000; ++i)
        Keep();
    Received.List(2).Select(0, 49'999, true);
    Time.PerLook = std::chrono::microseconds(2);
    commands_.DeleteMessages(2);
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
    const struct {
        MessagePage Page;
        bool Answer;
        bool Filtered;
        std::string Shown;
        std::size_t NetBiosLeft;
        std::size_t SyslogLeft;
    } cases[] = {
        {MessagePage::NetBios, true, true, filterActive_, 10, 1},
        {MessagePage::NetBios, false, false, eraseNetBios, 10, 1},
        {MessagePage::Consolidated, true, false, eraseSyslog, 10, 0},
        {MessagePage::NetBios, true, false, eraseNetBios, 0, 0},
    };
    KeepTen();
    KeepSyslog(AlarmRecord());
    for (const auto& [page, answer, filtered, shown, netBiosLeft, syslogLeft] : cases) {
        Boxes = FakeMessageBoxes();
        Boxes.Answer = answer;
        filter_.Active = filtered;
        Display.Page = page;
        commands_.ClearAllMessages();
        EXPECT_EQ(Boxes.Shown, std::vector<std::string>{shown});
        EXPECT_EQ(RowCount(Received.NetBios), netBiosLeft);
        EXPECT_EQ(RowCount(Received.Syslog), syslogLeft);
    }
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "0 NetBIOS Message(s)");
    EXPECT_EQ(Received.Syslog.Messages.UpperBound(), 100);
    EXPECT_EQ(Keep(), 1) << "slot 0 stays empty, freed slots are forgotten";
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
