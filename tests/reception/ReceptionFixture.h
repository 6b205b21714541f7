#pragma once

#include <gtest/gtest.h>

#include <string>

#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeDatagrams.h"
#include "tests/fakes/FakeMailslots.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {

/// Both channels over a mailslot, a port and a window in memory.
class ReceptionFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(mailslot_.InitializeMailslot("engine", true));
        filters_.OpenFilterFile();
        filters_.LoadSuppressionFilters();
    }
    FakeMailslots::Slot& Mailslot() { return mailslots_.Slots["engine"]; }
    void Suppress(const std::string& computer) {
        filters_.CurrentFilter = SuppressionFilter();
        filters_.CurrentFilter.FilterName = "one";
        filters_.CurrentFilter.Computer = computer;
        filters_.CurrentFilter.EventID = -1;
        ASSERT_TRUE(filters_.WriteFilterRecord(1));
        filters_.LoadSuppressionFilters();
    }

    TemporaryFolder folder_;
    FakeClock clock_;
    FakeMailslots mailslots_;
    FakeDatagrams datagrams_;
    FakePendingEvents events_;
    FakeDisplay display_;
    FakeViewFilter viewFilter_;
    FakeSignals signals_;
    AlarmRecord alarm_;
    bool paused_ = false;
    TimeSlices slices_{clock_, events_};
    ReceivedMessages received_{display_, slices_};
    SuppressionFilters filters_{folder_.Path() / "SavedFilters.dat"};
    cvbMailslot mailslot_{mailslots_, clock_};
    ReceptionParts parts_{filters_, viewFilter_, received_, display_, signals_,
                          slices_,  clock_,      alarm_,    paused_};
    int wakes_ = 0;
    SyslogEndpoint syslog_{datagrams_, parts_, [this] { ++wakes_; }};
    ProcessingCycle cycle_{mailslot_, syslog_, parts_};
};

}  // namespace tallyhorn
