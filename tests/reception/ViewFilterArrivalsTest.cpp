#include <gtest/gtest.h>

#include "tests/support/Notifications.h"
#include "tests/support/ReceptionInMemory.h"

namespace tallyhorn {
namespace {

/// A console that receives every notification by both channels.
struct BothChannels : ReceptionInMemory {
    void Arrive(const Notification& notification) {
        ArriveText(NetBiosText(notification));
        ArriveDatagram(Datagram(notification));
    }
    /// Does what the window's timers do.
    void Tick(int times = 1) {
        for (int i = 0; i < times; ++i) {
            Cycle.TimCheckTick();
            Syslog.DataArrival();
        }
    }
    /// Returns every row and every node, in order, and the counts in the status bar.
    std::string Everything() {
        std::string text =
            Display.Panels[StatusPanel::NetBiosCount] + Display.Panels[StatusPanel::SyslogCount];
        for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
            const MessageList& list = Received.List(view);
            for (std::size_t i = 0; i < list.Size(); ++i) {
                text += "\n" + std::to_string(view) + " " + std::to_string(list.SlotAt(i));
                for (int column = 0; column < MessageColumnCount; ++column)
                    text += "|" + list.CellText(i, static_cast<MessageColumn>(column));
                text += std::to_string(static_cast<int>(list.TypeAt(i)));
            }
        }
        AppendNodes(TreeNode(), text);
        return text;
    }
    void AppendNodes(TreeNode parent, std::string& text) {
        for (std::size_t i = 0; i < Received.Tree.ChildCount(parent); ++i) {
            const TreeNode child = Received.Tree.ChildAt(parent, i);
            text += "\n" + Received.Tree.Key(child) + "|" + Received.Tree.Text(child);
            AppendNodes(child, text);
        }
    }
    /// Returns whether the syslog lists and the tree contain the messages that have a row.
    bool Agrees() const {
        const MessageRows& all = Received.Syslog.Rows;
        std::size_t rows = 0;
        std::size_t known = 0;
        for (Slot slot = 0; slot < all.SlotBound(); ++slot) {
            rows += all.Holds(slot) ? 1 : 0;
            known += all.Holds(slot) && IsKnown(all[slot].Type) ? 1 : 0;
        }
        return rows == RowCount(Received.Syslog) && known == Received.Tree.LeafCount();
    }
};

/// Sends the same random notifications to two consoles, at any moment.  One of them sets and removes its view
/// filter at random, the other has none.  After each removal, both must show the same.
TEST(ViewFilterArrivalsTest, ARemovedFilterLeavesNoTrace) {
    constexpr const char* Types[] = {"Information",   "Warning",    "Error", "Failure Audit",
                                     "Success Audit", "unheard of", ""};
    BothChannels filtering;
    BothChannels plain;
    std::mt19937 random(5);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    const auto arrive = [&] {
        const std::string alarm = below(8) == 0 ? "Alarm" : "alarm " + std::to_string(below(3));
        const std::string computer = (below(2) == 0 ? "PC" : "pc") + std::to_string(below(4));
        const char* const type = Types[below(7)];
        for (BothChannels* const console : {&filtering, &plain})
            console->Arrive({.Name = alarm, .Computer = computer, .Type = type});
    };
    filtering.Events.Event = [&] {
        // Ticks only while the filter is being applied, because a tick inside another tick would change the
        // order of arrival.
        if (filtering.Display.WorkUnderWay == 0)
            return;
        if (below(3) == 0)
            arrive();
        filtering.Tick();
    };
    filtering.Time.PerLook = std::chrono::milliseconds(20);
    int compared = 0;
    for (int step = 0; step < 700; ++step) {
        const std::size_t what = below(100);
        if (what < 85) {
            arrive();
        } else if (what < 92) {
            filtering.Tick();
        } else if (what < 97) {
            filtering.Display.Page = static_cast<MessagePage>(below(3));
            ViewFilter::Criteria criteria;
            criteria.at(0) = "alarm " + std::to_string(below(4));
            if (below(2) == 0)
                criteria.at(3) = "PC" + std::to_string(below(4));
            filtering.Filter.Apply(criteria);
        } else {
            filtering.Filter.RemoveViewFilter();
            for (BothChannels* const console : {&filtering, &plain})
                console->Tick(100);
            ASSERT_EQ(filtering.Everything(), plain.Everything()) << step;
            ++compared;
            if (below(6) == 0) {
                for (BothChannels* const console : {&filtering, &plain})
                    console->Received.Clear(console->Received.Syslog);
            }
        }
        ASSERT_TRUE(filtering.Agrees()) << step;
    }
    EXPECT_GT(compared, 10);
}

}  // namespace
}  // namespace tallyhorn
