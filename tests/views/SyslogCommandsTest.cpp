#include <algorithm>
#include <deque>
#include <random>

#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"

namespace tallyhorn {
namespace {

class SyslogCommandsTest : public CommandsFixture {
protected:
    void Keep(const std::string& alarm, const std::string& type, const std::string& computer) {
        KeepSyslog(RecordOf({.Name = alarm, .Computer = computer, .Type = type}));
    }
    std::size_t Rows() const { return RowCount(Received.Syslog); }
    /// Returns the first node of a level, from 1 for alarms to 4 for leaves.
    TreeNode First(int level) const {
        TreeNode node;
        while (level-- > 0)
            node = Received.Tree.ChildAt(node, 0);
        return node;
    }
    void DeleteNode(TreeNode node) {
        Received.Tree.SelectNode(node);
        commands_.DeleteMessages(ConsolidatedView, Display.Page);
    }
};

/// Arrivals are held from the answer on.  Those of the time of the question stay, whatever is selected then.
TEST_F(SyslogCommandsTest, DeletesWhatWasSelectedWhenTheQuestionOpened) {
    for (const ViewNumber view : {ViewNumber{4}, ConsolidatedView}) {
        for (const char* const computer : {"A", "B", "B"})
            Keep("Full", "Warning", computer);
        Received.List(4).ClearSelection();
        Received.List(4).Select(0, 1, true);
        Received.Tree.SelectNode(First(3));
        Boxes.WhileAsked = [this] {
            EXPECT_FALSE(TheGate.SyslogDeleteInProgress());
            EXPECT_TRUE(TheGate.AdmitPoll());
            Keep("Full", "Warning", "A");
            Received.List(4).Select(2, 3, true);
            Received.Tree.SelectNode(First(1));
        };
        Events.Event = [this] { EXPECT_TRUE(TheGate.SyslogDeleteInProgress()); };
        Time.PerLook = std::chrono::milliseconds(20);
        Display.ListCalls.clear();
        commands_.DeleteMessages(view, Display.Page);
        const bool inList = view == 4;
        EXPECT_EQ(Display.ListCalls.size(), inList ? 4U : 8U) << "views are hidden and shown";
        EXPECT_EQ(Rows(), inList ? 2U : 3U);
        EXPECT_EQ(Display.Panels[StatusPanel::SyslogCount],
                  inList ? "2 Syslog Message(s)" : "3 Syslog Message(s)");
        EXPECT_EQ(Received.Tree.Text(First(3)), "A ( 1 Events )");
        EXPECT_TRUE(Display.Enabled[ConsolidatedView]);
        Received.Clear(Received.Syslog);
    }
    EXPECT_GT(Events.Runs, 0);
    EXPECT_EQ(Boxes.Shown.size(), 2U);
}

TEST_F(SyslogCommandsTest, ATreeDeleteRemovesAllRowsThatTheNodeCovers) {
    const std::string leafQuestion = "Are you sure you want to delete the message you have selected?";
    const std::string branchQuestion =
        "Are you sure you want to delete all the messages under the tree branch you selected?";
    Keep("Disk", "Unheard of", "A");  // the tree counts this row in its alarm, but has no leaf for it
    for (int level = 4; level > 0; --level) {
        SCOPED_TRACE(level);
        Keep("Disk", "Error", "A");
        for (const bool answer : {false, true}) {
            Boxes.Answer = answer;
            DeleteNode(First(level));
            EXPECT_EQ(Rows(), !answer ? 2U : level > 1 ? 1U : 0U);
            EXPECT_EQ(Boxes.Shown.back(), level == 4 ? leafQuestion : branchQuestion);
        }
        EXPECT_FALSE(TheGate.SyslogDeleteInProgress());
        EXPECT_TRUE(Received.Tree.SelectedNode().IsRoot()) << "a removed node stays selected";
    }
}

/// Checks that lists, tree and store agree, that slots are reused in the order in which they were freed, and
/// that the store grows just before it is full.
TEST_F(SyslogCommandsTest, EverythingAgreesThroughRandomAddsDeletesAndClears) {
    constexpr const char* Types[] = {"Information",   "Warning",    "Error", "Failure Audit",
                                     "Success Audit", "unheard of", ""};
    std::mt19937 random(3);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    std::deque<Slot> freed;
    Received.Clear(Received.Syslog);
    std::int32_t bound = 100;
    Display.Page = MessagePage::Consolidated;
    for (int step = 0; step < 4000; ++step) {
        const std::size_t what = below(100);
        const auto view = ViewOfList(Channel::Syslog, below(3));
        MessageList& list = Received.List(view);
        const std::size_t before = Rows();
        if (what < 93) {
            Keep("a" + std::to_string(below(4)), Types[below(7)], "PC" + std::to_string(below(3)));
            ASSERT_EQ(Rows(), before + 1);
            const Slot slot = freed.empty() ? static_cast<Slot>(before) : freed.front();
            ASSERT_NE(Received.Syslog.Messages.Text(slot), "") << step;
            if (!freed.empty())
                freed.pop_front();
            bound *= static_cast<std::int32_t>(Rows()) == bound - 1 ? 2 : 1;
        } else if (what < 96 && list.Size() > 0) {
            list.SortBy(MessageColumn::Computer);
            const std::size_t first = below(list.Size());
            list.ClearSelection();
            list.Select(first, std::min(first + below(20), list.Size() - 1), true);
            const std::vector<Slot> removed = list.SelectedSlots();
            freed.insert(freed.end(), removed.begin(), removed.end());
            commands_.DeleteMessages(view, Display.Page);
            ASSERT_EQ(Rows(), before - removed.size()) << step;
        } else if (what < 99 && Received.Tree.LeafCount() > 0) {
            TreeNode node;
            for (std::size_t level = 1 + below(3); level > 0 && Received.Tree.ChildCount(node) > 0; --level)
                node = Received.Tree.ChildAt(node, below(Received.Tree.ChildCount(node)));
            const std::vector<Slot> covered = Received.Tree.SlotsUnder(node);
            // The covered slots are freed list by list, in the order of the rows.
            for (const MessageList& freeing : Received.Syslog.Lists) {
                for (std::size_t i = 0; i < freeing.Size(); ++i) {
                    if (std::ranges::find(covered, freeing.SlotAt(i)) != covered.end())
                        freed.push_back(freeing.SlotAt(i));
                }
            }
            DeleteNode(node);
            ASSERT_EQ(Rows(), before - covered.size()) << step;
        } else if (below(10) == 0) {
            freed.clear();
            bound = 100;
            commands_.ClearAllMessages(Display.Page);
        }
        ASSERT_EQ(Received.Syslog.Messages.MessageCount(), static_cast<std::int32_t>(Rows())) << step;
        ASSERT_EQ(Received.Syslog.Messages.UpperBound(), bound) << step;
        for (const Slot slot : freed)
            ASSERT_EQ(Received.Syslog.Messages.Text(slot), "") << step;
    }
}

}  // namespace
}  // namespace tallyhorn
