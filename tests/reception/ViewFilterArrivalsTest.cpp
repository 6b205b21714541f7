#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>

#include "tests/support/Notifications.h"
#include "tests/support/ReceptionInMemory.h"

namespace tallyhorn {
namespace {

/// A console to which every notification comes by both channels.
struct Road : ReceptionInMemory {
    void Arrive(const Notification& told) {
        ArriveText(NetBiosText(told));
        ArriveDatagram(Datagram(told));
    }
    /// What the window's timers do.
    void Tick() {
        Cycle.TimCheckTick();
        Syslog.DataArrival();
    }
    void HandleAll() {
        Tick();
        for (int i = 0; i < 1000 && !Datagrams.Bound[Port].Waiting.empty(); ++i)
            Tick();
    }

    /// Every row and node, in order.
    std::string Everything() {
        std::string text;
        for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
            const MessageList& list = Received.List(view);
            for (std::size_t i = 0; i < list.Size(); ++i) {
                text += std::to_string(view) + " " + std::to_string(list.SlotAt(i));
                for (int column = 0; column < MessageColumnCount; ++column)
                    text += "|" + list.CellText(i, static_cast<MessageColumn>(column));
                text += std::to_string(static_cast<int>(list.TypeAt(i))) + "\n";
            }
        }
        AppendNodes(TreeNode(), text);
        return text + Display.Panels[StatusPanel::NetBiosCount] + Display.Panels[StatusPanel::SyslogCount];
    }
    void AppendNodes(TreeNode parent, std::string& text) {
        for (std::size_t i = 0; i < Received.Tree.ChildCount(parent); ++i) {
            const TreeNode child = Received.Tree.ChildAt(parent, i);
            text += Received.Tree.Key(child) + "|" + Received.Tree.Text(child) + "\n";
            AppendNodes(child, text);
        }
    }
    /// Whether lists, rows and tree tell of the same notifications.
    void CheckAgreement() {
        std::size_t known = 0;
        for (MessageChannel* const channel : {&Received.NetBios, &Received.Syslog}) {
            std::size_t held = 0;
            for (Slot slot = 0; slot < channel->Rows.SlotBound(); ++slot) {
                if (!channel->Rows.Holds(slot))
                    continue;
                ++held;
                known += channel->Traits.HasTree && IsKnown(channel->Rows[slot].Type) ? 1 : 0;
                ASSERT_FALSE(channel->Messages.Text(slot).empty());
            }
            ASSERT_EQ(held, RowCount(*channel));
        }
        ASSERT_EQ(Received.Tree.LeafCount(), known);
    }
};

/// One console whose filter goes on and off at random, with arrivals at every moment, against one that never
/// filters.
TEST(ViewFilterArrivalsTest, OnceOffNothingTellsThatThereWasAFilter) {
    constexpr const char* Types[] = {"Information",   "Warning",    "Error", "Failure Audit",
                                     "Success Audit", "unheard of", ""};
    Road filtering;
    Road plain;
    std::mt19937 random(5);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    const auto arrive = [&] {
        const std::string alarm = below(8) == 0 ? "Alarm" : "alarm " + std::to_string(below(3));
        const std::string computer = (below(2) == 0 ? "PC" : "pc") + std::to_string(below(4));
        const char* const type = Types[below(7)];
        for (Road* const road : {&filtering, &plain})
            road->Arrive({.Name = alarm, .Computer = computer, .Type = type});
    };
    filtering.Events.Event = [&] {
        // In the filter's own work; a tick inside another would change the order of arrival.
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
            filtering.HandleAll();
            plain.HandleAll();
            ASSERT_EQ(filtering.Everything(), plain.Everything()) << step;
            ++compared;
            if (below(6) == 0) {
                for (Road* const road : {&filtering, &plain})
                    road->Received.Clear(road->Received.Syslog);
            }
        }
        filtering.CheckAgreement();
        if (HasFatalFailure())
            FAIL() << step;
    }
    EXPECT_GT(compared, 10);
}

}  // namespace
}  // namespace tallyhorn
