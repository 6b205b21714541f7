#include <algorithm>
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
    /// Deletes about a third of the rows, in the same way as the main window.
    void DeleteSome() {
        MessageList& list = Received.List(SyslogErrors);
        list.ClearSelection();
        for (std::size_t i = 0; i < list.Size(); ++i)
            list.Select(i, i, Below(3) == 0);
        commands_.DeleteMessages(SyslogErrors, Display.Page);
    }
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }

    /// Reads the view's texts in their order; in the tree, the texts of the shown message's computer only.
    void ReadTexts() {
        texts_.clear();
        const ConsolidatedTree& tree = Received.Tree;
        const TreeNode group = tree.FindComputer("Full", EventType::Error, computer_);
        const MessageList& list = Received.List(SyslogErrors);
        const bool inTree = view_ == ConsolidatedView;
        const std::size_t leaves = group.IsRoot() ? 0 : tree.ChildCount(group);
        for (std::size_t i = 0; i < (inTree ? leaves : list.Size()); ++i)
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
    std::mt19937 random_{2};
    // What the window has to show, calculated from the order of the view alone.
    ViewNumber view_ = SyslogErrors;
    std::string shown_, computer_;  ///< empty if there is nothing to show
    std::vector<std::string> texts_;
    std::size_t index_ = 0;  ///< the index of shown_ in texts_, or texts_.size() if shown_ is not there
    std::size_t place_ = 0;  ///< the last index at which the message was seen
};

/// Mixes arrivals, deletions, sorting, rebuilt views and steps at random, in a list and then in the tree.
/// Other messages reuse freed slots, and LookAgain is not called after every change.
TEST_F(MessageDetailsTest, FollowsItsMessageThroughRandomSteps) {
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
        const std::size_t what = Below(12);
        if (what >= 9)
            details_.NotePlace();
        if (what < 6) {
            Keep(std::to_string(step), Below(2) == 0 ? "PC" : "OTHER", static_cast<std::int64_t>(Below(100)));
        } else if (what < 9 && !shown_.empty()) {
            ASSERT_NO_FATAL_FAILURE(StepAsExpected(what == 6));
        } else if (what == 9) {
            Received.List(SyslogErrors).SortBy(MessageColumn::DateLogged);
        } else if (what == 10) {
            DeleteSome();
        } else {
            Received.ClearViews();
            for (const Slot slot : all)
                Received.ShowMessage(Received.Syslog, slot, AlarmDate(), Alarm);
            Received.Tree.AddNoted();
        }
        if (Below(3) == 0)
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
