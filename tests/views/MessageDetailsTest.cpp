#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "records/CanonicalText.h"
#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/MessageDetails.h"

namespace tallyhorn {
namespace {

constexpr ViewNumber Errors = 0;
constexpr ViewNumber SyslogErrors = 3;

class MessageDetailsTest : public CommandsFixture {
protected:
    /// Keeps a syslog error; the slots are 0, 1, 2 ... in order of arrival.
    void Keep(const std::string& description, const std::string& computer = "PC", std::int64_t minute = 0) {
        AlarmRecord alarm = RecordOf({.Computer = computer, .Description = description});
        alarm.DateTime = AlarmDate{minute * 60};
        KeepSyslog(alarm);
    }
    /// Deletes as the main window does.
    void Delete(ViewNumber view, const std::vector<Slot>& slots) {
        details_.NotePlace();
        Received.List(view).ClearSelection();
        for (const Slot slot : slots) {
            const std::size_t position = Received.List(view).PositionOf(slot).value();
            Received.List(view).Select(position, position, true);
        }
        commands_.DeleteMessages(view);
    }
    void SortByDate() {
        details_.NotePlace();
        Received.List(SyslogErrors).SortBy(MessageColumn::DateLogged);
    }
    /// Empties the views and shows the syslog messages at these slots again.
    void ShowAgain(const std::vector<Slot>& slots) {
        details_.NotePlace();
        Received.ClearViews();
        for (const Slot slot : slots)
            Received.ShowMessage(Received.Syslog, slot, AlarmDate(), Alarm);
        Received.Tree.AddNoted();
    }

    /// Reads the texts of the view in its order, in the tree those of the shown message's computer.
    void ReadTexts() {
        texts_.clear();
        const ConsolidatedTree& tree = Received.Tree;
        const TreeNode group = tree.FindComputer("Full", EventType::Error, computer_);
        const MessageList& list = Received.List(SyslogErrors);
        const bool inTree = view_ == ConsolidatedView;
        for (std::size_t i = 0; i < (!inTree          ? list.Size()
                                     : group.IsRoot() ? 0
                                                      : tree.ChildCount(group));
             ++i)
            texts_.push_back(
                Received.Syslog.Messages.Text(inTree ? tree.ChildAt(group, i).LeafSlot() : list.SlotAt(i)));
        index_ = static_cast<std::size_t>(std::find(texts_.begin(), texts_.end(), shown_) - texts_.begin());
    }
    void StepAsExpected(bool forward) {
        const bool leads = index_ < texts_.size() && (forward ? index_ + 1 < texts_.size() : index_ > 0);
        ASSERT_EQ(forward ? details_.ShowNext() : details_.ShowPrevious(), leads);
        if (leads)
            shown_ = texts_[forward ? index_ + 1 : index_ - 1];
    }
    void LookAsExpected() {
        const MessageDetails::Found found = details_.LookAgain();
        ReadTexts();
        if (texts_.empty())
            shown_.clear();
        else if (index_ == texts_.size())
            shown_ =
                texts_[std::min(view_ == ConsolidatedView && place_ > 0 ? place_ - 1 : place_, index_ - 1)];
        ASSERT_EQ(found == MessageDetails::Found::Nothing, shown_.empty());
        ReadTexts();
        if (shown_.empty())
            return;
        ASSERT_EQ(details_.Text(), shown_);
        ASSERT_EQ(details_.HasPrevious(), index_ > 0);
        ASSERT_EQ(details_.HasNext(), index_ + 1 < texts_.size());
    }

    MessageDetails details_{Received};
    // What the window has to show, worked out from the order of the view alone.
    ViewNumber view_ = SyslogErrors;
    std::string shown_, computer_;  ///< empty if there is nothing to show
    std::vector<std::string> texts_;
    std::size_t index_ = 0;  ///< the index of shown_ in texts_, or texts_.size() if shown_ is not there
    std::size_t place_ = 0;  ///< the last index at which the message was seen
};

/// Arrivals, deletions, sorting, rebuilt views and steps in random order, in a list and then in the tree.
/// Freed slots are reused by other messages, and the window does not look again after every change.
TEST_F(MessageDetailsTest, FollowsItsMessageThroughRandomSteps) {
    std::mt19937 random(2);
    const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
    for (int step = 0; step < 8000; ++step) {
        SCOPED_TRACE(step);
        if (step == 4000) {
            Received.Clear(Received.Syslog);
            ASSERT_NO_FATAL_FAILURE(LookAsExpected());
            view_ = ConsolidatedView;
        }
        ReadTexts();
        if (index_ < texts_.size())
            place_ = index_;
        const std::vector<Slot> all = Received.Tree.SlotsUnder(TreeNode());
        std::vector<Slot> some;
        std::copy_if(all.begin(), all.end(), std::back_inserter(some), [&](Slot) { return below(3) == 0; });
        const std::size_t what = below(12);
        if (what < 6) {
            Keep(std::to_string(step), below(2) == 0 ? "PC" : "OTHER", static_cast<std::int64_t>(below(100)));
        } else if (what < 9 && !shown_.empty()) {
            ASSERT_NO_FATAL_FAILURE(StepAsExpected(what == 6));
        } else if (what == 9) {
            SortByDate();
        } else if (what == 10) {
            Delete(SyslogErrors, some);
        } else {
            ShowAgain(all);
        }
        if (below(3) == 0)
            continue;
        if (shown_.empty() && !all.empty() && details_.Show(view_, all.back())) {
            shown_ = details_.Text();
            computer_ = Received.Syslog.Rows.CellText(all.back(), MessageColumn::Computer);
        }
        if (!shown_.empty()) {
            ASSERT_NO_FATAL_FAILURE(LookAsExpected());
        }
    }
}

TEST_F(MessageDetailsTest, SortsTheLeavesOfAGroupThatWasNotOpened) {
    for (const int minute : {30, 10, 20})
        Keep(std::to_string(minute), "PC", minute);
    ASSERT_TRUE(details_.Show(ConsolidatedView, 0));
    EXPECT_TRUE(details_.ShowPrevious() && details_.Text().ends_with("20"));
}

TEST_F(MessageDetailsTest, FillsTheCurrentAlarmAsTheChannelReads) {
    EXPECT_FALSE(details_.Show(Errors, 1)) << "no such message";
    const std::string netBios = NetBiosText({.Name = "Disk (C:)", .Computer = "pc", .Description = "a\r\nb"});
    KeepNetBios(netBios);
    Keep("what happened", "X", 5);
    for (const ViewNumber view : {Errors, SyslogErrors, ConsolidatedView}) {
        ASSERT_TRUE(details_.Show(view, view == Errors ? 1 : 0));
        AlarmRecord alarm;
        details_.FillCurrentAlarm(alarm, AlarmDate());
        EXPECT_EQ(alarm.AlarmName + "|" + alarm.Computer + "|" + alarm.Description,
                  view == Errors ? "Disk (C:)|PC|a\r\nb" : "Full|X|what happened");
        EXPECT_EQ(details_.Text(), view == Errors ? netBios : BuildMessageText(alarm));
    }
}

TEST(IsTabularTest, FindsColumnsOnlyInsideLines) {
    for (const char* const text : {"a   b", "a\tb", "a \t b", "one line\r\nname:\tvalue"})
        EXPECT_TRUE(IsTabular(text)) << text;
    for (const char* const text :
         {"", "two  blanks", "\tindented\r\n   indented", "trailing   \r\ntab\t\r\n", "a \r\n  b"})
        EXPECT_FALSE(IsTabular(text)) << text;
}

}  // namespace
}  // namespace tallyhorn
