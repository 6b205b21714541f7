#include <gtest/gtest.h>

#include "records/CanonicalText.h"
#include "tests/support/DateTexts.h"
#include "tests/support/Notifications.h"
#include "tests/support/ReceptionInMemory.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

class SyslogEndpointTest : public ::testing::Test, protected ReceptionInMemory {
protected:
    SyslogEndpointTest() { Received.Clear(Received.Syslog); }

    void Arrive(const std::string& name) { ArriveDatagram(Datagram({.Name = name})); }
    /// Returns the names of all alarms that the lists show, in the order of arrival.
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
    std::string withNuls = Datagram({"one", "System", "joe", "pc", "Warning", "text, with a comma"}) + '\0';
    ArriveDatagram(withNuls.insert(withNuls.find("ne)"), 1, '\0'));
    ArriveDatagram("an ordinary line: of another program");
    ArriveDatagram("Event without a colon");
    ArriveDatagram("");
    ArriveDatagram(Datagram({.Name = "hidden", .Computer = "elsewhere"}));
    ArriveDatagram("Event (Test Message): x");
    Events.Event = [&] {
        EXPECT_TRUE(TheGate.ProcessingPaused());
        Arrive("late");
        EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later);
        Events.Event = nullptr;
    };
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later) << "a datagram arrived meanwhile";
    EXPECT_FALSE(TheGate.ProcessingPaused());
    EXPECT_EQ(Display.Panels[StatusPanel::SyslogCount], "3 Syslog Message(s)");
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    Suppress("noisy");
    Display.Visible = false;
    for (const auto& [datagram, flashes] :
         {std::pair("session opened for user root: x"s, 0),
          std::pair(Datagram({.Name = "suppressed", .Computer = "noisy"}), 1)}) {
        ArriveDatagram(datagram);
        ArriveDatagram(datagram);
        Syslog.DataArrival();
        EXPECT_EQ(Signals.Flashes, flashes) << "once a batch: " << datagram;
        Cycle.PauseCommand();
        ArriveDatagram(datagram);
        Syslog.DataArrival();
        Cycle.PauseCommand();
        EXPECT_EQ(Signals.Flashes, flashes * 2) << "at the end of a pause: " << datagram;
    }
    EXPECT_EQ(Names(), "one late ") << "the first datagram without its NULs";
    EXPECT_EQ(Kept(), 4) << "messages that the view filter hides are kept too";
    EXPECT_EQ(Received.Tree.LeafCount(), 2U);
    EXPECT_EQ(Signals.Sounds, 4) << "one sound for each message";
    AlarmRecord record = RecordOf({.Name = "one", .Type = "Warning", .Description = "text, with a comma"});
    EXPECT_EQ(Received.Syslog.Messages.Text(0), SettleMessage(record));
    const std::string dated = Received.Syslog.Messages.Text(2);
    EXPECT_EQ(dated.substr(0, 58),
              "Date: " + FormatGeneralDate(AlarmDate{Time.Local}) + "\r\nAlarm Name: Test Notification")
        << "without a date of its own, a message gets the date of its arrival";
    Received.Clear(Received.Syslog);
    Time.Local += 1000;
    for (const std::string& text : {dated, Datagram({.Name = "foreign"})})
        Received.RestoreBackupMessage(text, AlarmDate{Time.Local}, Alarm);
    EXPECT_EQ(Received.Syslog.Messages.Text(0), dated) << "a restored message keeps its date";
    EXPECT_EQ(Kept(), 2);
}

TEST_F(SyslogEndpointTest, APauseQueuesDatagramsAndItsEndHandlesThem) {
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
    Cycle.PauseCommand();
    EXPECT_EQ(Names(), "one two ");
    EXPECT_EQ(Display.Panels[StatusPanel::SyslogCount], "2 Syslog Message(s)");
    Syslog.DataArrival();
    EXPECT_EQ(Names(), "one two three ");
    Cycle.PauseCommand();
    Arrive("queued");
    Syslog.DataArrival();
    Arrive("waiting");
    Syslog.Close();
    EXPECT_EQ(Names(), "one two three queued waiting ") << "Close handles both, even in a pause";
    Cycle.PauseCommand();
    Cycle.PauseCommand();
    Syslog.TakeOver({{0, Datagram({.Name = "saved"})}});
    Syslog.DataArrival();
    Cycle.PauseCommand();
    EXPECT_EQ(Names(), "one two three queued waiting saved ") << "no port is open";
}

TEST_F(SyslogEndpointTest, AStormIsHandledInSlices) {
    Time.PerLook = std::chrono::milliseconds(1);
    std::string sent;
    for (int i = 0; i < 1000; ++i) {
        Arrive(std::to_string(i));
        sent += std::to_string(i) + " ";
    }
    int slices = 1;
    while (Syslog.DataArrival() == SyslogEndpoint::Waiting::More)
        ++slices;
    EXPECT_GT(slices, 4);
    EXPECT_EQ(Events.Runs, slices);
    EXPECT_EQ(Names(), sent);
    EXPECT_EQ(Wakes, 1);
}

TEST_F(SyslogEndpointTest, BothChannelsAndTheQueueOfAPauseWaitForADelete) {
    Cycle.PauseCommand();
    Arrive("one");
    Syslog.DataArrival();
    auto hold = std::make_optional<Gate::Hold>(TheGate);
    const int wakes = Wakes;
    Cycle.PauseCommand();
    EXPECT_GT(Wakes, wakes) << "nothing else would handle the queue after the delete";
    Arrive("two");
    ArriveText("Date: 1/1/2009\r\n");
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Later);
    Cycle.TimCheckTick();
    EXPECT_EQ(Kept(), 0);
    EXPECT_EQ(Journal.Held.size(), 3U);
    hold.reset();
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(Names(), "one two ");
    Cycle.MissedTick();
    EXPECT_TRUE(Journal.Held.empty());
    EXPECT_EQ(Received.NetBios.Messages.MessageCount(), 1);
}

TEST_F(SyslogEndpointTest, ANewPortReplacesTheOldOneWhoseDatagramsAreKept) {
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
    Datagrams.Bound[49152].Losses = {.NoRoom = 1, .BySystem = 4};
    Datagrams.Taken = {Port};
    for (const std::int32_t bad : {std::int32_t{Port}, 65536, -1, 2'147'483'647})
        EXPECT_FALSE(Syslog.InitializeWinsock(bad)) << bad;
    EXPECT_TRUE(Datagrams.Bound.empty());
    EXPECT_EQ(Syslog.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(
        Display.ToolTips[StatusPanel::SyslogCount],
        "Not listening for syslog messages\n3 datagram(s) lost for want of room\n7 datagram(s) lost by the "
        "system");
}

TEST(SyslogQueue, OverwritesFromPositionOneOnceItIsFull) {
    const std::pair<std::size_t, const char*> cases[] = {
        {3, "1"}, {30000, "1"}, {30001, "30001"}, {60000, "30001"}, {60001, "60001"}};
    for (const auto& [count, first] : cases) {
        FakeArrivalJournal journal;
        SyslogQueue queue(journal);
        for (std::size_t i = 1; i <= count; ++i)
            queue.Add(std::to_string(i));
        const std::vector<HeldArrival> texts = queue.Take();
        ASSERT_EQ(texts.size(), std::min(count, SyslogQueue::Positions));
        EXPECT_EQ(texts.front().Text, first) << count;
        EXPECT_EQ(texts.back().Text, std::to_string(texts.size())) << count;
        for (const HeldArrival& arrival : texts)
            ASSERT_EQ(journal.Held.extract(arrival.Number).mapped(), arrival.Text);
        EXPECT_TRUE(journal.Held.empty()) << "dropped datagrams do not wait";
        EXPECT_EQ(queue.Count(), 0U);
        EXPECT_EQ(queue.Lost(), count - texts.size());
    }
}

TEST(SyslogQueue, HoldsNoMoreThanItsLimit) {
    FakeArrivalJournal journal;
    SyslogQueue queue(journal, 100);
    for (int i = 0; i < 3; ++i)
        queue.Add(std::string(40, 'x'));
    EXPECT_EQ(queue.Lost(), 1U);
    EXPECT_EQ(queue.Take().size(), 2U);
    queue.Add(std::string(100, 'y'));
    EXPECT_EQ(queue.Take().front().Text.size(), 100U) << "Take makes room for as many bytes again";
    for (int i = 0; i < 40'000; ++i)
        queue.Add(std::string(60, 'z'));
    EXPECT_EQ(queue.Lost(), 40'000U);
    EXPECT_EQ(queue.Take().size(), 1U) << "an overwritten text makes room for the next one";
}

}  // namespace
}  // namespace tallyhorn
