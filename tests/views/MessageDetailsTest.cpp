#include <gtest/gtest.h>

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
    /// A NetBIOS error whose text is its name.
    Slot Arrive(const std::string& name, std::int64_t minute = 0) {
        AlarmRecord alarm = RecordOf({.Name = name});
        alarm.DateTime = AlarmDate{minute * 60};
        return Received.KeepNetBiosMessage(name, alarm, true);
    }
    /// A syslog error of one alarm, that description; its slot is its place in order of arrival.
    void Keep(const std::string& description, const std::string& computer = "PC", std::int64_t minute = 0) {
        AlarmRecord alarm = RecordOf({.Computer = computer, .Description = description});
        alarm.DateTime = AlarmDate{minute * 60};
        KeepSyslog(alarm);
    }
    std::string Shown() const {
        const std::string& text = details_.Text();
        const std::size_t line = text.rfind('\n');
        return line == std::string::npos ? text : text.substr(line + 1);
    }
    /// With "^" where there is one before and "v" where there is one behind.
    std::string Now() const {
        return Shown() + (details_.HasPrevious() ? "^" : "") + (details_.HasNext() ? "v" : "");
    }
    std::string Next() {
        const bool stepped = details_.ShowNext();
        return (stepped ? "to " : "at ") + Now();
    }
    std::string Previous() {
        const bool stepped = details_.ShowPrevious();
        return (stepped ? "to " : "at ") + Now();
    }
    std::string LookAgain() {
        const MessageDetails::Found found = details_.LookAgain();
        if (found == MessageDetails::Found::Nothing)
            return "nothing";
        return (found == MessageDetails::Found::Same ? "same " : "other ") + Now();
    }
    /// As the main window does when the user deletes.
    void Delete(ViewNumber view, const std::vector<Slot>& slots) {
        details_.NotePlace();
        Received.List(view).ClearSelection();
        for (const Slot slot : slots) {
            const std::size_t position = Received.List(view).PositionOf(slot).value();
            Received.List(view).Select(position, position, true);
        }
        commands_.DeleteMessages(view);
    }
    /// Empties the views and shows the syslog messages at these slots anew.
    void ShowAnew(const std::vector<Slot>& slots) {
        details_.NotePlace();
        Received.ClearViews();
        for (const Slot slot : slots)
            Received.ShowMessage(Received.Syslog, slot, AlarmDate(), Alarm);
        Received.Tree.AddNoted();
    }

    MessageDetails details_{Received};
};

TEST_F(MessageDetailsTest, StepsToBothEndsOfAListAndNoFurther) {
    for (const char* const name : {"a", "b", "c"})
        Arrive(name);
    EXPECT_FALSE(details_.Show(Errors, 99)) << "no such slot";
    EXPECT_FALSE(details_.Show(Errors + 1, 1)) << "another list's";
    ASSERT_TRUE(details_.Show(Errors, 2));
    EXPECT_EQ(Now(), "b^v");
    EXPECT_EQ(Next(), "to c^");
    EXPECT_EQ(Next(), "at c^");
    EXPECT_EQ(Previous(), "to b^v");
    EXPECT_EQ(Previous(), "to av");
    EXPECT_EQ(Previous(), "at av");
    Delete(Errors, {2, 3});
    EXPECT_EQ(LookAgain(), "same a") << "alone";
    EXPECT_EQ(Next(), "at a");
    EXPECT_EQ(Previous(), "at a");
}

TEST_F(MessageDetailsTest, FollowsTheRowAndNotItsNumber) {
    for (int minute = 1; minute <= 3; ++minute)
        Arrive(std::to_string(minute), minute);
    ASSERT_TRUE(details_.Show(Errors, 3));
    details_.NotePlace();
    Received.List(Errors).SortBy(MessageColumn::DateLogged);
    EXPECT_EQ(LookAgain(), "same 3v") << "the newest is first now";
    Arrive("9", 9);
    Arrive("0", 0);
    EXPECT_EQ(LookAgain(), "same 3^v");
    EXPECT_EQ(Previous(), "to 9v");
    EXPECT_EQ(Next(), "to 3^v");
    Delete(Errors, {4});
    EXPECT_EQ(LookAgain(), "same 3v");
}

TEST_F(MessageDetailsTest, StepsThroughTheSiblingsInTheTreesOrder) {
    Keep("late", "PC", 30);
    Keep("early", "PC", 10);
    Keep("elsewhere", "OTHER", 20);
    Keep("between", "PC", 20);
    ASSERT_TRUE(details_.Show(ConsolidatedView, 0));
    EXPECT_EQ(Now(), "late^") << "sorted, though nobody has opened the group";
    EXPECT_EQ(Previous(), "to between^v");
    EXPECT_EQ(Previous(), "to earlyv");
    EXPECT_EQ(Previous(), "at earlyv");
    Keep("latest", "PC", 40);
    EXPECT_TRUE(details_.ShowNext() && details_.ShowNext());
    EXPECT_EQ(Next(), "to latest^");
    EXPECT_EQ(Next(), "at latest^");
}

TEST_F(MessageDetailsTest, ShowsWhatTookThePlaceOfWhatWent) {
    const struct {
        const char* What;
        ViewNumber View;
        Slot Of;
        std::vector<Slot> Gone;
        const char* Then;
    } cases[] = {
        {"another one", SyslogErrors, 1, {0}, "same 1v"},
        {"the first", SyslogErrors, 0, {0}, "other 1v"},
        {"one between", SyslogErrors, 1, {1}, "other 2^"},
        {"the last", SyslogErrors, 2, {2}, "other 1^"},
        {"it and the others behind", SyslogErrors, 1, {1, 2}, "other 0"},
        {"all", SyslogErrors, 1, {0, 1, 2}, "nothing"},
        {"the first leaf", ConsolidatedView, 0, {0}, "other 1v"},
        {"a leaf between", ConsolidatedView, 1, {1}, "other 0v"},
        {"the last leaf", ConsolidatedView, 2, {2}, "other 1^"},
        {"all leaves of the computer", ConsolidatedView, 1, {0, 1, 2}, "nothing"},
    };
    for (const auto& [what, view, of, gone, then] : cases) {
        Received.Clear(Received.Syslog);
        for (int i = 0; i < 3; ++i)
            Keep(std::to_string(i), "PC", i);
        ASSERT_TRUE(details_.Show(view, of)) << what;
        if (view == ConsolidatedView && gone.size() == 3)
            Keep("elsewhere", "OTHER");
        Delete(SyslogErrors, gone);
        EXPECT_EQ(LookAgain(), then) << what;
    }
}

/// The next one to come gets the slot of the one that went.
TEST_F(MessageDetailsTest, ASlotThatServesAgainIsNotTakenForTheOldOne) {
    const Slot slot = Arrive("old");
    ASSERT_TRUE(details_.Show(Errors, slot));
    Delete(Errors, {slot});
    ASSERT_EQ(Arrive("new"), slot);
    EXPECT_EQ(Next(), "at old");
    EXPECT_EQ(LookAgain(), "other new");
    Received.Clear(Received.NetBios);
    EXPECT_EQ(LookAgain(), "nothing");
    EXPECT_EQ(Shown(), "new") << "until the window has gone";
}

TEST_F(MessageDetailsTest, KeepsItsNotificationWhileTheViewsAreMadeAnew) {
    Keep("other computer", "OTHER", 0);
    for (int i = 1; i <= 4; ++i)
        Keep(std::to_string(i), "PC", 10 - i);
    const std::vector<Slot> all = {0, 1, 2, 3, 4};
    for (const ViewNumber view : {SyslogErrors, ConsolidatedView}) {
        // The row that moved up; the leaf that stands before.
        const std::string after = view == SyslogErrors ? "other 4^" : "other 4v";
        for (const std::vector<Slot>& without : {std::vector<Slot>{0, 1, 2, 4}, std::vector<Slot>{1, 2, 4}}) {
            ShowAnew(all);
            ASSERT_TRUE(details_.Show(view, 3));
            ShowAnew(all);
            EXPECT_EQ(LookAgain(), "same 3^v");
            // Without the first the groups are numbered anew: the second computer's number is the first's.
            ShowAnew(without);
            EXPECT_EQ(LookAgain(), after);
        }
    }
    ShowAnew(all);
    ASSERT_TRUE(details_.Show(ConsolidatedView, 3));
    ShowAnew({0});
    EXPECT_EQ(LookAgain(), "nothing") << "its computer shows nothing any more";
}

TEST_F(MessageDetailsTest, FillsTheCurrentAlarmAsTheChannelReads) {
    const std::string netBios =
        NetBiosText({.Name = "Disk (C:)", .Account = "joe", .Computer = "pc", .Description = "a\r\nb"});
    ASSERT_TRUE(details_.Show(Errors, Arrive(netBios)));
    AlarmRecord alarm;
    details_.FillCurrentAlarm(alarm, AlarmDate());
    EXPECT_EQ(alarm.AlarmName + "|" + alarm.Computer + "|" + alarm.Description, "Disk (C:)|PC|a\r\nb");
    Keep("what happened", "X", 5);
    for (const ViewNumber view : {SyslogErrors, ConsolidatedView}) {
        ASSERT_TRUE(details_.Show(view, 0));
        alarm = AlarmRecord();
        details_.FillCurrentAlarm(alarm, AlarmDate());
        EXPECT_EQ(alarm.AlarmName + "|" + alarm.Computer + "|" + alarm.Description, "Full|X|what happened");
        EXPECT_EQ(BuildMessageText(alarm), details_.Text());
    }
}

TEST(IsTabularTest, AsksForColumnsOnlyInsideLines) {
    for (const char* const text : {"a   b", "a\tb", "a \t b", "one line\r\nname:\tvalue"})
        EXPECT_TRUE(IsTabular(text)) << text;
    for (const char* const text :
         {"", "two  blanks", "\tindented\r\n   indented", "trailing   \r\ntab\t\r\n", "a \r\n  b"})
        EXPECT_FALSE(IsTabular(text)) << text;
}

}  // namespace
}  // namespace tallyhorn
