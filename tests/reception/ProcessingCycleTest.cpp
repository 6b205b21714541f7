#include <gmock/gmock.h>

#include "tests/support/Cases.h"
#include "tests/support/Notifications.h"
#include "tests/support/ReceptionInMemory.h"

namespace tallyhorn {
namespace {

class ProcessingCycleTest : public ::testing::Test, protected ReceptionInMemory {
protected:
    void Arrive(const Notification& notification) { ArriveText(NetBiosText(notification)); }
    std::string Names(ViewNumber view) {
        std::string names;
        for (std::size_t i = 0; i < Received.List(view).Size(); ++i)
            names += Received.List(view).CellText(i, MessageColumn::Alarm) + " ";
        return names;
    }
};

TEST_F(ProcessingCycleTest, SortsArrivalsByType) {
    Cycle.TimCheckTick();
    EXPECT_TRUE(Display.Panels.empty()) << "an empty mailslot changes nothing";
    for (const auto& [name, type] :
         SplitPairs("a=Information|b=Error|c=Success Audit|d=Warning|e=Failure Audit|f=Unheard of|g="))
        Arrive({.Name = name, .Type = type});
    Cycle.TimCheckTick();
    EXPECT_EQ(Names(2), "a c ");
    EXPECT_EQ(Names(1), "d ");
    EXPECT_EQ(Names(0), "b e f g ") << "unknown types are critical";
    EXPECT_EQ(Received.List(0).TypeAt(2), EventType::Unknown);
    EXPECT_EQ(Received.List(0).TypeAt(3), EventType::None);
    EXPECT_EQ(Alarm.TypeOfEvent, "questionmark") << "the record keeps the icon key";
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "7 NetBIOS Message(s)");
    EXPECT_EQ(Display.Enabled, (std::array<bool, 7>{true, true, true, false, false, false, false}));
    EXPECT_EQ(Received.NetBios.Messages.Text(1), NetBiosText({.Name = "a", .Type = "Information"}))
        << "the first slot is 1";
    EXPECT_EQ(Signals.Sounds, 1) << "one sound for each poll that reads texts";
    EXPECT_EQ(Signals.Flashes, 0);
    EXPECT_EQ(Events.Runs, 1) << "events run at the end of the poll";
}

TEST_F(ProcessingCycleTest, OnlyTheFieldsOfASuppressedTextRemain) {
    Suppress("noisy");
    Display.Visible = false;
    Arrive({.Name = "loud", .Computer = "NOISY", .Type = "Warning"});
    ArriveText("Date: 1/1/2009\r\n\r\n\r\nno name here\r\n");
    Cycle.TimCheckTick();
    EXPECT_EQ(Received.NetBios.Messages.UpperBound(), 0)
        << "the second text keeps the computer of the first one, so it is suppressed too";
    EXPECT_EQ(Display.Panels[StatusPanel::NetBiosCount], "0 NetBIOS Message(s)");
    EXPECT_EQ(Signals.Sounds, 1);
    EXPECT_EQ(Signals.Flashes, 1) << "the window is hidden";
    EXPECT_EQ(Alarm.AlarmName, "loud");
    Arrive({.Name = "heard", .Computer = "QUIET", .Type = "Warning"});
    Cycle.TimCheckTick();
    EXPECT_EQ(Names(1), "heard ");
    EXPECT_EQ(Cycle.ReceivedCount(), 3U);
}

TEST_F(ProcessingCycleTest, APauseGivesTextsToTheJournal) {
    Cycle.PauseCommand();
    EXPECT_TRUE(Display.PauseShown);
    EXPECT_TRUE(Display.Resuming);
    EXPECT_EQ(Display.Panels[StatusPanel::ProcessingStatus], "Status: Message Processing Paused");
    for (int i = 0; i < 40'000; ++i)
        Arrive({.Name = "a"});
    Cycle.TimCheckTick();
    EXPECT_EQ(Journal.Held.size(), 32'767U) << "the most texts that one poll reads";
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 0);
    Cycle.PauseCommand();
    EXPECT_EQ(Display.Panels[StatusPanel::ProcessingStatus], "Status: Processing Messages");
    EXPECT_FALSE(Display.Resuming);
    Cycle.TimCheckTick();
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 40'000);
    EXPECT_TRUE(Journal.Held.empty());
}

TEST_F(ProcessingCycleTest, TheTimerEndsAPauseAtThe121stTick) {
    const auto tick = [this](int times) {
        for (int i = 0; i < times; ++i)
            Cycle.ResumeTick();
    };
    Cycle.PauseCommand();
    tick(100);
    Cycle.PauseCommand();
    Cycle.PauseCommand();
    tick(21);
    EXPECT_TRUE(TheGate.ProcessingPaused()) << "the second pause counts from 0";
    tick(99);
    EXPECT_TRUE(TheGate.ProcessingPaused());
    tick(1);
    EXPECT_FALSE(TheGate.ProcessingPaused());
    EXPECT_FALSE(Display.PauseShown);
}

/// Rows that a nested poll adds come between those of the outer poll.
TEST_F(ProcessingCycleTest, EventsInsideAPollMayPollOrClear) {
    Time.PerLook = std::chrono::milliseconds(4);
    const auto poll = [this](const std::function<void()>& event) {
        Events.Event = [&event, runs = 0]() mutable {
            if (runs++ == 0)
                event();
        };
        for (const char* const name : {"1", "2", "3", "4", "5"})
            Arrive({.Name = name});
        Cycle.TimCheckTick();
    };
    poll([this] {
        Arrive({.Name = "inner"});
        Cycle.TimCheckTick();
    });
    EXPECT_EQ(Received.List(0).Size(), 6U) << "no text is lost or kept twice";
    EXPECT_NE(Names(0).find("inner 3"), std::string::npos) << Names(0);
    poll([this] { Received.Clear(Received.NetBios); });
    EXPECT_EQ(static_cast<std::size_t>(Received.NetBios.Messages.MessageCount()), Received.List(0).Size());
    EXPECT_THAT(Received.List(0).Size(), testing::AllOf(testing::Gt(0U), testing::Lt(5U)));
}

}  // namespace
}  // namespace tallyhorn
