#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "records/CanonicalText.h"
#include "tests/support/DateTexts.h"
#include "tests/support/Notifications.h"
#include "tests/support/ReceptionInMemory.h"

namespace tallyhorn {
namespace {

class SyslogEndpointTest : public ::testing::Test, protected ReceptionInMemory {
protected:
    SyslogEndpointTest() { Received.Clear(Received.Syslog); }

    void Arrive(const std::string& name) { ArriveDatagram(Datagram({.Name = name})); }
    /// The names of all alarms that the lists show, in the order of arrival.
    std::string Names() const {
        std::string names;
        for (Slot slot = 0; slot <= Received.Syslog.Messages.UpperBound(); ++slot) {
            if (Received.Syslog.Rows.Holds(slot))
                names += Received.Syslog.Rows.CellText(slot, MessageColumn::Alarm) + " ";
        }
        return names;
    }
    std::int32_t Kept() const { return Received.Syslog.Messages.MessageCount(); }
};

TEST_F(SyslogEndpointTest, KeepsNotificationsAndNothingElse) {
    Filter.Apply({std::nullopt, std::nullopt, std::nullopt, "PC"});
    ArriveDatagram(Datagram({"one", "System", "joe", "pc", "Warning", "text, with a comma"}));
    ArriveDatagram("an ordinary line: of another program");
    ArriveDatagram("Event without a colon");
    ArriveDatagram("");
    ArriveDatagram(Datagram({.Name = "hidden", .Computer = "elsewhere"}));
    ArriveDatagram("Event (Test Message): x");
    bool busyMeanwhile = false;
    Events.Event = [&] {
        busyMeanwhile = TheGate.ProcessingPaused();
        Arrive("late");
        EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later);
        Events.Event = nullptr;
    };
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later) << "one arrived while events ran";
    EXPECT_TRUE(busyMeanwhile);
    EXPECT_FALSE(TheGate.ProcessingPaused());
    EXPECT_EQ(Display.Panels[StatusPanel::SyslogCount], "3 Syslog Message(s)");
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(Names(), "one late ") << "messages that the view filter hides are kept too";
    EXPECT_EQ(Kept(), 4);
    EXPECT_EQ(Received.Tree.LeafCount(), 2U);
    EXPECT_EQ(Signals.Sounds, 4) << "once for each message";
    AlarmRecord first = RecordOf({.Name = "one", .Type = "Warning", .Description = "text, with a comma"});
    EXPECT_EQ(Received.Syslog.Messages.Text(0), SettleMessage(first));
    EXPECT_EQ(Received.Syslog.Messages.Text(2).substr(0, 58),
              "Date: " + FormatGeneralDate(AlarmDate{Time.Local}) + "\r\nAlarm Name: Test Notification")
        << "dated at its arrival";
}

TEST_F(SyslogEndpointTest, DropsWhatAFilterSuppresses) {
    Suppress("noisy");
    Display.Visible = false;
    ArriveDatagram(Datagram({.Name = "loud", .Computer = "noisy"}));
    Syslog.DataArrival();
    EXPECT_EQ(Kept(), 0);
    EXPECT_EQ(Signals.Sounds, 0);
    EXPECT_EQ(Signals.Flashes, 1) << "the window is hidden, and a datagram has arrived";
}

TEST_F(SyslogEndpointTest, RemovesNulsWhichTheBackupCannotHold) {
    std::string text = Datagram({.Name = "a_b"});
    text.replace(text.find('_'), 1, 1, '\0');
    ArriveDatagram(text + '\0');
    Syslog.DataArrival();
    EXPECT_EQ(Names(), "ab ");
    EXPECT_EQ(Received.Syslog.Messages.Text(0).find('\0'), std::string::npos);
}

TEST_F(SyslogEndpointTest, APauseQueuesAndItsEndHandles) {
    Cycle.PauseCommand();
    for (int i = 0; i < 30'002; ++i)
        ArriveDatagram("of another program");
    Syslog.DataArrival();
    EXPECT_EQ(Display.ToolTips[StatusPanel::SyslogCount],
              "Listening on UDP port 5514\n2 datagram(s) lost for want of room");
    Cycle.PauseCommand();
    Cycle.PauseCommand();
    Arrive("one");
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    Arrive("two");
    Syslog.DataArrival();
    EXPECT_EQ(Kept(), 0);
    Arrive("three");
    Display.Visible = false;
    const int flashes = Signals.Flashes;
    Cycle.PauseCommand();
    EXPECT_EQ(Signals.Flashes, flashes + 1) << "the window is hidden";
    EXPECT_EQ(Names(), "one two ");
    EXPECT_EQ(Display.Panels[StatusPanel::SyslogCount], "2 Syslog Message(s)");
    Syslog.DataArrival();
    EXPECT_EQ(Names(), "one two three ");
}

TEST_F(SyslogEndpointTest, DuringADeleteBothChannelsWait) {
    Engine().Waiting.push_back("Date: 1/1/2009\r\n");
    auto hold = std::make_optional<Gate::Hold>(TheGate);
    Arrive("one");
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later);
    Cycle.TimCheckTick();
    EXPECT_EQ(Kept(), 0);
    EXPECT_EQ(Engine().Waiting.size(), 1U);
    hold.reset();
    Syslog.DataArrival();
    Cycle.TimCheckTick();
    EXPECT_EQ(Kept(), 1);
    EXPECT_TRUE(Engine().Waiting.empty());
}

TEST_F(SyslogEndpointTest, AStormIsHandledInSlices) {
    Time.PerLook = std::chrono::milliseconds(1);
    for (int i = 0; i < 1000; ++i)
        Arrive(std::to_string(i));
    int slices = 1;
    while (Syslog.DataArrival() == SyslogEndpoint::Waiting::More)
        ++slices;
    EXPECT_GT(slices, 4);
    EXPECT_EQ(Events.Runs, slices);
    ASSERT_EQ(Kept(), 1000);
    for (Slot slot = 0; slot < 1000; ++slot)
        ASSERT_EQ(Received.Syslog.Rows.CellText(slot, MessageColumn::Alarm), std::to_string(slot));
    EXPECT_EQ(Wakes, 1);
}

/// In a storm every poll may fall into a batch; it then runs right after the batch.
TEST_F(SyslogEndpointTest, AMissedPollRunsAfterTheBatch) {
    Engine().Waiting.push_back("Date: 1/1/2009\r\n");
    Events.Event = [this] { Cycle.TimCheckTick(); };
    Arrive("one");
    Syslog.DataArrival();
    Events.Event = nullptr;
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 0);
    Cycle.MissedTick();
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 1);
    Engine().Waiting.push_back("Date: 1/1/2009\r\n");
    Cycle.MissedTick();
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 1) << "nothing was missed";
}

/// The tool bar still shows the pause.
TEST_F(SyslogEndpointTest, APauseThatBeginsInsideABatchEndsWithIt) {
    Events.Event = [this] {
        Events.Event = nullptr;
        Cycle.PauseCommand();
    };
    Arrive("one");
    Syslog.DataArrival();
    EXPECT_TRUE(Display.PauseShown);
    EXPECT_FALSE(TheGate.ProcessingPaused());
    Cycle.PauseCommand();
    EXPECT_FALSE(Display.PauseShown) << "the command ends the pause that is shown";
}

TEST_F(SyslogEndpointTest, APausesQueueWaitsForADeleteToo) {
    Cycle.PauseCommand();
    Arrive("one");
    Syslog.DataArrival();
    auto hold = std::make_optional<Gate::Hold>(TheGate);
    const int wakes = Wakes;
    Cycle.PauseCommand();
    EXPECT_EQ(Kept(), 0);
    EXPECT_GT(Wakes, wakes) << "nothing else would handle the queue after the delete";
    Arrive("two");
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later);
    hold.reset();
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(Names(), "one two ");
}

TEST_F(SyslogEndpointTest, AnotherPortTakesOverAndTheOldOnesDatagramsAreKept) {
    for (int i = 0; i < 40; ++i)
        Arrive(std::to_string(i));
    Datagrams.Bound[Port].Losses = {.NoRoom = 2, .BySystem = 3};
    Time.PerLook = std::chrono::milliseconds(6);
    EXPECT_TRUE(Syslog.InitializeWinsock(0));
    EXPECT_EQ(Kept(), 40);
    EXPECT_FALSE(Datagrams.Bound.contains(Port));
    EXPECT_EQ(
        Display.ToolTips[StatusPanel::SyslogCount],
        "Listening on UDP port 49152\n2 datagram(s) lost for want of room\n3 datagram(s) lost by the system");
    Datagrams.Taken = {Port};
    for (const std::int32_t bad : {std::int32_t{Port}, 65536, -1, 2'147'483'647})
        EXPECT_FALSE(Syslog.InitializeWinsock(bad)) << bad;
    EXPECT_TRUE(Datagrams.Bound.empty());
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(Display.ToolTips[StatusPanel::SyslogCount].substr(0, 33), "Not listening for syslog messages");
}

TEST_F(SyslogEndpointTest, CloseHandlesWhatHasArrivedEvenInAPause) {
    Cycle.PauseCommand();
    Arrive("queued");
    Syslog.DataArrival();
    Arrive("waiting");
    Syslog.Close();
    EXPECT_EQ(Names(), "queued waiting ");
    EXPECT_TRUE(Datagrams.Bound.empty());
}

TEST_F(SyslogEndpointTest, RestoresWhatWasKept) {
    ArriveDatagram("Event (Test Message): x");
    Syslog.DataArrival();
    const std::string kept = Received.Syslog.Messages.Text(0);
    Received.Clear(Received.Syslog);
    Time.Local += 1000;
    for (const std::string& text : {kept, Datagram({.Name = "foreign"})})
        Received.RestoreBackupMessage(text, AlarmDate{Time.Local}, Alarm);
    EXPECT_EQ(Kept(), 2);
    EXPECT_EQ(Received.Syslog.Messages.Text(0), kept) << "with the date that it had";
    EXPECT_EQ(Names(), "Test Notification foreign ");
}

TEST(SyslogQueue, ContinuesAtPositionOneAfterTheLast) {
    const struct {
        std::uint64_t Count;
        std::size_t Taken;
        const char* First;
        const char* Last;
    } cases[] = {{3, 3, "1", "3"},
                 {30000, 30000, "1", "30000"},
                 {30001, 30000, "30001", "30000"},
                 {60000, 30000, "30001", "30000"},
                 {60001, 30000, "60001", "30000"}};
    for (const auto& [count, taken, first, last] : cases) {
        SyslogQueue queue;
        for (std::uint64_t i = 1; i <= count; ++i)
            queue.Add(std::to_string(i));
        const std::vector<std::string> texts = queue.Take();
        ASSERT_EQ(texts.size(), taken) << count;
        EXPECT_EQ(texts.front(), first) << count;
        EXPECT_EQ(texts.back(), last) << count;
        EXPECT_EQ(queue.Count(), 0U);
        EXPECT_EQ(queue.Lost(), count - taken) << count;
    }
    EXPECT_TRUE(SyslogQueue().Take().empty());
}

TEST(SyslogQueue, HoldsNoMoreThanItsLimit) {
    SyslogQueue queue(100);
    for (int i = 0; i < 3; ++i)
        queue.Add(std::string(40, 'x'));
    EXPECT_EQ(queue.Lost(), 1U);
    EXPECT_EQ(queue.Take(), (std::vector<std::string>{std::string(40, 'x'), std::string(40, 'x')}));
    queue.Add(std::string(100, 'y'));
    EXPECT_EQ(queue.Take().front().size(), 100U) << "Take frees the bytes";
    for (int i = 0; i < 40'000; ++i)
        queue.Add(std::string(60, 'z'));
    EXPECT_EQ(queue.Lost(), 40'000U);
    EXPECT_EQ(queue.Take().size(), 1U) << "the text that is overwritten makes room for the next";
}

}  // namespace
}  // namespace tallyhorn
