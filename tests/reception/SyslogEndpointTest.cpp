#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/reception/ReceptionFixture.h"

namespace tallyhorn {
namespace {

constexpr std::uint16_t Port = 5514;

std::string Datagram(const std::string& alarm, const std::string& computer = "pc",
                     const std::string& type = "Warning") {
    return "<13>Alarm (" + alarm + ") Event raised: System Log, 08/21/2008 2:05:09 PM, Disk, " + type +
           ", None, 7, joe, " + computer + ", text, with a comma";
}

class SyslogEndpointTest : public ReceptionFixture {
protected:
    void SetUp() override {
        ReceptionFixture::SetUp();
        ASSERT_TRUE(syslog_.InitializeWinsock(Port));
        received_.ClearSyslog();
    }
    void Arrive(const std::string& text) { ASSERT_TRUE(datagrams_.Arrive(Port, text)); }
    /// The names of all alarms that the lists show, in the order of arrival.
    std::string Names() const {
        std::string names;
        for (Slot slot = 0; slot <= received_.Syslog.Messages.UpperBound(); ++slot) {
            if (received_.Syslog.Rows.Holds(slot))
                names += received_.Syslog.Rows.CellText(slot, MessageColumn::Alarm) + " ";
        }
        return names;
    }
    std::int32_t Kept() const { return received_.Syslog.Messages.MessageCount(); }
};

TEST_F(SyslogEndpointTest, KeepsNotificationsAndNothingElse) {
    viewFilter_.Computer = "PC";
    viewFilter_.Active = true;
    Arrive(Datagram("one"));
    Arrive("an ordinary line: of another program");
    Arrive("Event without a colon");
    Arrive("");
    Arrive(Datagram("hidden", "elsewhere"));
    Arrive("Event (Test Message): x");
    bool busyMeanwhile = false;
    events_.Event = [&] {
        busyMeanwhile = paused_;
        Arrive(Datagram("late"));
        EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Later);
        events_.Event = nullptr;
    };
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Later) << "one came while events ran";
    EXPECT_TRUE(busyMeanwhile);
    EXPECT_FALSE(paused_);
    EXPECT_EQ(display_.Panels[StatusPanel::SyslogCount], "3 Syslog Message(s)");
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(Names(), "one late ") << "what the view filter rejects is kept all the same";
    EXPECT_EQ(Kept(), 4);
    EXPECT_EQ(received_.Tree.LeafCount(), 2U);
    EXPECT_EQ(signals_.Sounds, 4) << "once for each that is kept";
    EXPECT_EQ(received_.Syslog.Messages.Text(0),
              "Date: 8/21/2008 2:05:09 PM\r\nAlarm Name: one\r\nLog Type: System\r\nSource: Disk\r\n"
              "Type Of Event: Warning\r\nCategory: None\r\nEventID: 7\r\nAccount: JOE\r\nComputer: PC\r\n"
              "Description: \r\ntext, with a comma");
    EXPECT_EQ(received_.Syslog.Messages.Text(2).substr(0, 58),
              "Date: " + FormatGeneralDate(AlarmDate{clock_.Local}) + "\r\nAlarm Name: Test Notification")
        << "dated at its arrival";
}

TEST_F(SyslogEndpointTest, WhatAFilterSuppressesLeavesNoTrace) {
    Suppress("noisy");
    display_.Visible = false;
    Arrive(Datagram("loud", "noisy"));
    syslog_.DataArrival();
    EXPECT_EQ(Kept(), 0);
    EXPECT_EQ(signals_.Sounds, 0);
    EXPECT_EQ(signals_.Flashes, 1) << "the window is hidden, and something came";
}

TEST_F(SyslogEndpointTest, NulsGoAtOnceSinceTheBackupCouldNotKeepThem) {
    std::string text = Datagram("a_b");
    text.replace(text.find('_'), 1, 1, '\0');
    Arrive(text + '\0');
    syslog_.DataArrival();
    EXPECT_EQ(Names(), "ab ");
    EXPECT_EQ(received_.Syslog.Messages.Text(0).find('\0'), std::string::npos);
}

TEST_F(SyslogEndpointTest, APauseQueuesAndItsEndHandles) {
    cycle_.PauseCommand();
    Arrive(Datagram("one"));
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    Arrive(Datagram("two"));
    syslog_.DataArrival();
    EXPECT_EQ(Kept(), 0);
    Arrive(Datagram("three"));
    cycle_.PauseCommand();
    EXPECT_EQ(Names(), "one two ");
    EXPECT_EQ(display_.Panels[StatusPanel::SyslogCount], "2 Syslog Message(s)");
    syslog_.DataArrival();
    EXPECT_EQ(Names(), "one two three ");
}

TEST_F(SyslogEndpointTest, ADeleteHoldsBothChannelsBackAndLosesNothing) {
    Mailslot().Waiting.push_back("Date: 1/1/2009\r\n");
    received_.SyslogDeleteInProgress = true;
    Arrive(Datagram("one"));
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Later);
    cycle_.TimCheckTick();
    EXPECT_EQ(Kept(), 0);
    EXPECT_EQ(Mailslot().Waiting.size(), 1U);
    received_.SyslogDeleteInProgress = false;
    syslog_.DataArrival();
    cycle_.TimCheckTick();
    EXPECT_EQ(Kept(), 1);
    EXPECT_TRUE(Mailslot().Waiting.empty());
}

TEST_F(SyslogEndpointTest, AStormIsHandledInSlices) {
    clock_.PerLook = std::chrono::milliseconds(1);
    for (int i = 0; i < 1000; ++i)
        Arrive(Datagram(std::to_string(i)));
    int slices = 1;
    while (syslog_.DataArrival() == SyslogEndpoint::Waiting::More)
        ++slices;
    EXPECT_GT(slices, 4);
    EXPECT_EQ(events_.Runs, slices);
    ASSERT_EQ(Kept(), 1000);
    for (Slot slot = 0; slot < 1000; ++slot)
        ASSERT_EQ(received_.Syslog.Rows.CellText(slot, MessageColumn::Alarm), std::to_string(slot));
    EXPECT_EQ(wakes_, 1);
}

/// Every poll may fall into the handling of datagrams: it is made up for afterwards.
TEST_F(SyslogEndpointTest, AStormLeavesTheMailslotItsTurn) {
    Mailslot().Waiting.push_back("Date: 1/1/2009\r\n");
    events_.Event = [this] { cycle_.TimCheckTick(); };
    Arrive(Datagram("one"));
    syslog_.DataArrival();
    events_.Event = nullptr;
    EXPECT_EQ(received_.NetBios.Messages.MessageCount(), 0);
    cycle_.MissedTick();
    EXPECT_EQ(received_.NetBios.Messages.MessageCount(), 1);
    Mailslot().Waiting.push_back("Date: 1/1/2009\r\n");
    cycle_.MissedTick();
    EXPECT_EQ(received_.NetBios.Messages.MessageCount(), 1) << "only what was missed";
}

/// The end of the work ends the pause, whatever is shown.
TEST_F(SyslogEndpointTest, APauseThatBeginsInsideTheWorkEndsWithIt) {
    events_.Event = [this] {
        events_.Event = nullptr;
        cycle_.PauseCommand();
    };
    Arrive(Datagram("one"));
    syslog_.DataArrival();
    EXPECT_TRUE(display_.PauseShown);
    EXPECT_FALSE(paused_);
}

TEST_F(SyslogEndpointTest, APausesQueueWaitsForADeleteToo) {
    cycle_.PauseCommand();
    Arrive(Datagram("one"));
    syslog_.DataArrival();
    received_.SyslogDeleteInProgress = true;
    cycle_.PauseCommand();
    EXPECT_EQ(Kept(), 0);
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Later);
    received_.SyslogDeleteInProgress = false;
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(Names(), "one ");
}

TEST_F(SyslogEndpointTest, AnotherPortTakesOverAndTheOldOnesDatagramsAreKept) {
    for (int i = 0; i < 40; ++i)
        Arrive(Datagram(std::to_string(i)));
    datagrams_.Bound[Port].Losses = {.NoRoom = 2, .BySystem = 3};
    clock_.PerLook = std::chrono::milliseconds(6);
    EXPECT_TRUE(syslog_.InitializeWinsock(0));
    EXPECT_EQ(Kept(), 40);
    EXPECT_FALSE(datagrams_.Bound.contains(Port));
    EXPECT_EQ(
        display_.ToolTips[StatusPanel::SyslogCount],
        "Listening on UDP port 49152\n2 datagram(s) lost for want of room\n3 datagram(s) lost by the system");
    datagrams_.Taken = {Port};
    for (const std::int32_t bad : {std::int32_t{Port}, 65536, -1, 2'147'483'647})
        EXPECT_FALSE(syslog_.InitializeWinsock(bad)) << bad;
    EXPECT_TRUE(datagrams_.Bound.empty());
    EXPECT_EQ(syslog_.DataArrival(), SyslogEndpoint::Waiting::Nothing);
    EXPECT_EQ(display_.ToolTips[StatusPanel::SyslogCount].substr(0, 33), "Not listening for syslog messages");
}

TEST_F(SyslogEndpointTest, ClosingHandlesWhatHasComeEvenInAPause) {
    cycle_.PauseCommand();
    Arrive(Datagram("queued"));
    syslog_.DataArrival();
    Arrive(Datagram("waiting"));
    syslog_.Close();
    EXPECT_EQ(Names(), "queued waiting ");
    EXPECT_TRUE(datagrams_.Bound.empty());
}

TEST_F(SyslogEndpointTest, RestoresWhatWasKept) {
    Arrive("Event (Test Message): x");
    syslog_.DataArrival();
    const std::string kept = received_.Syslog.Messages.Text(0);
    received_.ClearSyslog();
    clock_.Local += 1000;
    syslog_.RestoreBackupMessage(kept);
    syslog_.RestoreBackupMessage(Datagram("foreign"));
    EXPECT_EQ(Kept(), 2);
    EXPECT_EQ(received_.Syslog.Messages.Text(0), kept) << "with the date that it had";
    EXPECT_EQ(Names(), "Test Notification foreign ");
}

TEST(SyslogQueue, GoesRoundBehindItsLastPosition) {
    const struct {
        std::uint64_t Count;
        std::size_t Taken;
        const char* First;
        const char* Last;
        std::uint64_t Lost;
    } cases[] = {{0, 0, "", "", 0},
                 {3, 3, "1", "3", 0},
                 {30000, 30000, "1", "30000", 0},
                 {30001, 30000, "30001", "30000", 1},
                 {60000, 30000, "30001", "30000", 30000},
                 {60001, 30000, "60001", "30000", 30001}};
    for (const auto& [count, taken, first, last, lost] : cases) {
        SyslogQueue queue;
        for (std::uint64_t i = 1; i <= count; ++i)
            queue.Add(std::to_string(i));
        EXPECT_EQ(queue.Count(), count);
        const std::vector<std::string> texts = queue.Take();
        ASSERT_EQ(texts.size(), taken) << count;
        EXPECT_EQ(queue.Count(), 0U);
        EXPECT_EQ(queue.Lost(), lost) << count;
        if (taken > 0) {
            EXPECT_EQ(texts.front(), first) << count;
            EXPECT_EQ(texts.back(), last) << count;
        }
    }
}

TEST(SyslogQueue, HoldsNoMoreThanItsLimit) {
    SyslogQueue queue(100);
    for (int i = 0; i < 3; ++i)
        queue.Add(std::string(40, 'x'));
    EXPECT_EQ(queue.Lost(), 1U);
    EXPECT_EQ(queue.Take(), (std::vector<std::string>{std::string(40, 'x'), std::string(40, 'x')}));
    queue.Add(std::string(100, 'y'));
    EXPECT_EQ(queue.Take().front().size(), 100U) << "what was taken counts no more";
    for (int i = 0; i < 40'000; ++i)
        queue.Add(std::string(60, 'z'));
    EXPECT_EQ(queue.Take().size() + queue.Lost(), 40'001U) << "each is lost once or is there";
}

}  // namespace
}  // namespace tallyhorn
