#include <gtest/gtest.h>

#include "filters/ViewFilter.h"
#include "tests/support/MessagesInMemory.h"
#include "tests/support/Notifications.h"

namespace tallyhorn {
namespace {

using Names = std::vector<std::string>;

constexpr std::nullopt_t Any = std::nullopt;
enum Criterion : std::size_t { ByAlarm, ByLog, ByAccount, ByComputer };

class ViewFilterTest : public ::testing::Test, protected MessagesInMemory {
protected:
    void SetUp() override { Display.Page = MessagePage::Syslog; }

    /// Keeps a syslog notification, and shows it if it passes the filter.
    void Syslog(const Notification& told) {
        const AlarmRecord record = RecordOf(told);
        KeepSyslog(record, filter_.PassesViewFilter(record));
    }
    void ArriveText(const std::string& text) {
        ParseCurrentAlarm(text, Alarm);
        Received.KeepNetBiosMessage(text, Alarm, filter_.PassesViewFilter(Alarm));
    }
    void NetBios(const Notification& told) { ArriveText(NetBiosText(told)); }
    void Apply(std::size_t column, const std::string& text) {
        ViewFilter::Criteria criteria;
        criteria.at(column) = text;
        filter_.Apply(criteria);
    }
    /// Returns the texts in one column of a list.
    Names Column(ViewNumber view, MessageColumn column) {
        Names names;
        for (std::size_t i = 0; i < Received.List(view).Size(); ++i)
            names.push_back(Received.List(view).CellText(i, column));
        return names;
    }
    Names Computers(ViewNumber view) { return Column(view, MessageColumn::Computer); }
    /// Returns the views that were hidden (marked "-") and shown since the previous call.
    std::string TakeListCalls() {
        std::string calls;
        for (const std::string& call : std::exchange(Display.ListCalls, {}))
            calls += (call.starts_with("hide") ? "-" : "") + call.substr(5) + " ";
        return calls;
    }

    ViewFilter filter_{Context};
};

TEST_F(ViewFilterTest, ApplyKeepsTheRowsWithExactlyTheseTexts) {
    const std::vector<Notification> alarms = {
        {"Full", "Security", "JOE", "A", "Error"}, {"Full", "SECURITY", "JOE", "B", "Warning"},
        {"full", "System", "", "C", "Error"},      {"Fuller", "Security", "ANN", "D", "Information"},
        {"", "", "ANN", "E", "who knows"},         {"Full", "Security", "ANN", "F", "Success Audit"},
    };
    // `left` names the computers that remain in the lists of errors, warnings and information.
    const std::tuple<const char*, ViewFilter::Criteria, std::array<Names, 3>, std::size_t> cases[] = {
        {"by alarm, case matters", {{"Full", Any, Any, Any}}, {{{"A"}, {"B"}, {"F"}}}, 3},
        {"by account", {{Any, Any, "ANN", Any}}, {{{"E"}, {}, {"D", "F"}}}, 2},
        {"by two columns", {{"Full", "Security", Any, Any}}, {{{"A"}, {}, {"F"}}}, 2},
        {"by an empty text", {{Any, Any, "", Any}}, {{{"C"}, {}, {}}}, 1},
        {"by a text of another column", {{"JOE", Any, Any, Any}}, {{{}, {}, {}}}, 0},
        {"by a text that no message has", {{"Ful", Any, Any, Any}}, {{{}, {}, {}}}, 0},
    };
    for (const Notification& alarm : alarms) {
        Syslog(alarm);
        NetBios(alarm);
    }
    for (const bool syslog : {true, false, true}) {
        Display.Page = syslog ? MessagePage::Syslog : MessagePage::NetBios;
        const ViewNumber first = syslog ? ViewNumber{3} : ViewNumber{0};
        const ViewNumber other = syslog ? ViewNumber{0} : ViewNumber{3};
        for (const auto& [why, criteria, left, leaves] : cases) {
            filter_.Apply(criteria);
            EXPECT_TRUE(filter_.InForce());
            for (std::size_t i = 0; i < 3; ++i) {
                const auto list = static_cast<ViewNumber>(first + static_cast<ViewNumber>(i));
                EXPECT_EQ(Computers(list), left.at(i)) << why << " " << i;
                EXPECT_EQ(Display.Enabled.at(static_cast<std::size_t>(list)), !left.at(i).empty());
            }
            EXPECT_EQ(Computers(other), (Names{"A", "C", "E"})) << why << ": the other channel";
            EXPECT_EQ(Received.Tree.LeafCount(), syslog ? leaves : 5) << why;
            EXPECT_EQ(Display.Enabled[ConsolidatedView], !Received.Tree.IsEmpty());
            filter_.RemoveViewFilter();
            EXPECT_FALSE(filter_.InForce());
            EXPECT_EQ(Computers(first), (Names{"A", "C", "E"})) << why;
            EXPECT_EQ(Received.Tree.LeafCount(), 5U) << why;
        }
    }
}

TEST_F(ViewFilterTest, ArrivalsAreComparedWithoutCase) {
    const std::tuple<const char*, ViewFilter::Criteria, Notification, bool> cases[] = {
        {"case beyond ASCII", {{Any, Any, "J\xD6RG", Any}}, {"x", "", "j\xF6rg", "z", ""}, true},
        {"a longer one", {{"Full", Any, Any, Any}}, {"Fuller", "", "", "", ""}, false},
        {"one of two", {{"Full", Any, Any, "PC"}}, {"full", "", "", "pd", ""}, false},
        {"an empty text accepts no other", {{Any, Any, "", Any}}, {"x", "", "JOE", "", ""}, false},
        {"an empty text", {{Any, Any, "", Any}}, {"x", "", "", "", ""}, true},
    };
    for (const auto& [why, criteria, arrival, passes] : cases) {
        const AlarmRecord record = RecordOf(arrival);
        filter_.Apply(criteria);
        EXPECT_EQ(filter_.PassesViewFilter(record), passes) << why;
        filter_.RemoveViewFilter();
        EXPECT_TRUE(filter_.PassesViewFilter(record)) << why;
    }
}

TEST_F(ViewFilterTest, BuildsTheTreeFromTheRemainingMessages) {
    for (const char* const computer : {"A", "B", "A"})
        Syslog({.Computer = computer});
    Syslog({.Computer = "A", .Type = "Warning"});
    Syslog({.Computer = "A", .Type = "who knows"});
    Received.Tree.SelectNode(TreeNode::Leaf(1));
    Apply(ByComputer, "A");
    const TreeNode alarm = Received.Tree.ChildAt(TreeNode(), 0);
    EXPECT_EQ(Received.Tree.Text(alarm), "Full ( 3 Events )");
    EXPECT_TRUE(Received.Tree.HasLeaf(0) && Received.Tree.HasLeaf(2) && Received.Tree.HasLeaf(3));
    EXPECT_EQ(Computers(3), (Names{"A", "A", "A"})) << "a message of unknown type has no leaf";
    EXPECT_EQ(Received.Tree.SlotsUnder(alarm).size(), 4U) << "but it belongs to the branch of its alarm";
    EXPECT_TRUE(Received.Tree.SelectedNode().IsRoot());
    EXPECT_EQ(Alarm.TypeOfEvent, "Warning") << "the current alarm is the last leaf's";
}

TEST_F(ViewFilterTest, HidesViewsAndHoldsArrivalsWhileItWorks) {
    // The number in a case is how often pending events run if the work takes no time.
    const std::tuple<MessagePage, const char*, int> cases[] = {
        {MessagePage::NetBios, "-0 -1 -2 0 1 2 ", 1}, {MessagePage::Consolidated, "-3 -4 -5 -6 6 3 4 5 ", 3}};
    for (int i = 0; i < 3000; ++i) {
        Syslog({.Computer = i % 2 == 0 ? "A" : "B"});
        NetBios({.Computer = i % 2 == 0 ? "A" : "B"});
    }
    bool heldThroughout = true;
    Events.Event = [&] {
        heldThroughout = heldThroughout && TheGate.SyslogDeleteInProgress() && Display.WorkUnderWay == 1;
    };
    for (const bool slow : {false, true}) {
        Time.PerLook = std::chrono::milliseconds(slow ? 20 : 0);
        for (const auto& [page, applied, runs] : cases) {
            Display.Page = page;
            Display.Progress.clear();
            Events.Runs = 0;
            Apply(ByComputer, "A");
            EXPECT_EQ(TakeListCalls(), applied);
            EXPECT_TRUE(slow ? Events.Runs > runs : Events.Runs == runs) << applied << Events.Runs;
            EXPECT_EQ(Display.FilterShown, true);
            filter_.RemoveViewFilter();
            EXPECT_EQ(TakeListCalls(), "-0 -1 -2 -3 -4 -5 -6 0 1 2 3 4 5 6 ");
            EXPECT_TRUE(heldThroughout) << applied;
            EXPECT_FALSE(TheGate.SyslogDeleteInProgress());
            EXPECT_EQ(Display.WorkUnderWay, 0);
            EXPECT_EQ(Display.Progress.size() > 40, slow) << "progress is shown between slices";
            for (const auto& [done, total] : Display.Progress)
                EXPECT_LE(done, total);
            EXPECT_EQ(Computers(0).size(), 3000U);
            EXPECT_EQ(Received.Tree.LeafCount(), 3000U);
        }
    }
}

TEST_F(ViewFilterTest, TheCommandAppliesOrRemovesTheFilter) {
    Syslog({});
    int dialogs = 0;
    filter_.ToggleViewFilter([&] { ++dialogs; });
    EXPECT_FALSE(Display.FilterShown.has_value()) << "the dialog was cancelled";
    Apply(ByLog, "none");
    Events.Event = [&] { EXPECT_EQ(Display.FilterShown, false) << "the button is released before the work"; };
    filter_.ToggleViewFilter([&] { ++dialogs; });
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(Computers(3), Names{"PC"});
}

TEST_F(ViewFilterTest, ShowsAllMessagesInTheOrderOfTheirSlots) {
    for (const char* const computer : {"A", "B", "C"})
        NetBios({.Computer = computer});
    Received.List(0).RemoveAt(std::vector<std::size_t>{0});
    Received.NetBios.Rows.Remove(1);
    Received.NetBios.Messages.Free(1);
    NetBios({.Computer = "D"});
    ASSERT_EQ(Computers(0), (Names{"B", "C", "D"}));
    Apply(ByComputer, "C");
    Received.SetDateStyle({true, "-"});
    Received.SetActiveView(2);
    filter_.RemoveViewFilter();
    EXPECT_EQ(Computers(0), (Names{"D", "B", "C"}));
    EXPECT_EQ(Received.List(0).CellText(0, MessageColumn::DateLogged), "21-08-2008 2:05:09 PM");
    EXPECT_EQ(Received.ActiveView(), 2);
}

TEST_F(ViewFilterTest, AFieldThatCannotBeReadKeepsItsEarlierText) {
    Syslog({.Name = "By syslog"});
    ArriveText("Date: 08/21/2008 14:05:09\r\n\r\n\r\nno name");
    NetBios({.Name = "Named"});
    ArriveText("no text of ours");
    ASSERT_EQ(Column(0, MessageColumn::Alarm), (Names{"", "Named", "Named"}));
    Apply(ByAlarm, "Named");
    filter_.RemoveViewFilter();
    EXPECT_EQ(Column(0, MessageColumn::Alarm), (Names{"By syslog", "Named", "Named"}));
}

TEST_F(ViewFilterTest, KeepsSortingAndSelection) {
    for (const char* const computer : {"B", "C", "A", "B"})
        Syslog({.Account = computer, .Computer = computer});
    Received.List(3).SortBy(MessageColumn::Computer);
    Received.List(3).Select(0, 1, true);
    ASSERT_EQ(Computers(3), (Names{"C", "B", "B", "A"}));
    Apply(ByAccount, "B");
    EXPECT_EQ(Received.List(3).SelectedSlots(), std::vector<Slot>{0});
    Syslog({.Account = "B", .Computer = "Z"});
    EXPECT_EQ(Computers(3), (Names{"Z", "B", "B"}));
    filter_.RemoveViewFilter();
    EXPECT_EQ(Computers(3), (Names{"Z", "C", "B", "B", "A"}));
    EXPECT_EQ(Received.List(3).SelectedCount(), 0U) << "new rows are not selected";
}

TEST_F(ViewFilterTest, OffersEachTextOfTheChannelOnce) {
    for (const char* const computer : {"b", "\xC4", "", "B", "a", "b"})
        Syslog({.Computer = computer});
    Syslog({.Log = "Security", .Type = "Information"});
    NetBios({.Computer = "other"});
    ViewFilter::Values values = filter_.ValuesOnShow();
    EXPECT_EQ(values[ByComputer], (Names{"", "a", "B", "b", "PC", "\xC4"}));
    EXPECT_EQ(values[ByLog], (Names{"Security", "System"}));
    Display.Page = MessagePage::Consolidated;
    EXPECT_EQ(filter_.ValuesOnShow(), values);
    Display.Page = MessagePage::NetBios;
    EXPECT_EQ(filter_.ValuesOnShow()[ByComputer], Names{"OTHER"});
}

TEST_F(ViewFilterTest, KnowsTheTextsOfTheSelectedRow) {
    Syslog({.Computer = "A"});
    Syslog({.Computer = "B", .Type = "Warning"});
    NetBios({.Computer = "C"});
    // The page in front, the active view, the selected slot of each list, and the computer expected.
    const std::tuple<MessagePage, ViewNumber, std::map<ViewNumber, Slot>, std::optional<std::string>>
        cases[] = {
            {MessagePage::Syslog, 4, {{3, 0}, {4, 1}}, "B"},
            {MessagePage::Syslog, 4, {{0, 0}, {3, 0}}, "A"},
            {MessagePage::Syslog, 0, {{0, 0}, {4, 1}}, "B"},
            {MessagePage::Syslog, ConsolidatedView, {{0, 0}}, Any},
            {MessagePage::NetBios, 4, {{0, 1}, {4, 1}}, "C"},
            {MessagePage::Consolidated, 4, {{4, 1}}, "A"},
        };
    Received.Tree.SelectNode(TreeNode::Leaf(0));
    for (const auto& [page, active, selected, computer] : cases) {
        Display.Page = page;
        Received.SetActiveView(active);
        Display.Selected = selected;
        EXPECT_EQ(filter_.SelectedTexts().at(ByComputer), computer) << active;
    }
}

}  // namespace
}  // namespace tallyhorn
