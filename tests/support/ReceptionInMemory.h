#pragma once

#include "filters/ViewFilter.h"
#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "tests/support/FakeArrivalJournal.h"
#include "tests/support/FakeArrivals.h"
#include "tests/support/FakeDatagrams.h"
#include "tests/support/FakeMailslots.h"
#include "tests/support/FilterRecords.h"
#include "tests/support/MessagesInMemory.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {

/// Both channels, which read a mailslot and a UDP port in memory, with suppression filters and a view filter.
template <typename ClockType>
struct ReceptionOver : MessagesOver<ClockType> {
    static constexpr std::uint16_t Port = 5514;

    ReceptionOver() {
        Mailslot.InitializeMailslot("engine", true);
        Syslog.InitializeWinsock(Port);
        Suppression.OpenFilterFile();
        Suppression.LoadSuppressionFilters();
    }
    FakeMailslots::Mailslot& Engine() { return Mailslots.ByName["engine"]; }
    void Suppress(const std::string& computer) {
        Suppression.CurrentFilter = FilterOn("one", "");
        Suppression.CurrentFilter.Computer = computer;
        Suppression.WriteFilterRecord(1);
        Suppression.LoadSuppressionFilters();
    }
    void ArriveText(const std::string& text) { Engine().Waiting.push_back(text + '\0'); }
    void ArriveDatagram(const std::string& text) { Datagrams.Arrive(Port, text); }

    TemporaryFolder Folder;
    FakeMailslots Mailslots;
    FakeDatagrams Datagrams;
    FakeSignals Signals;
    FakeArrivalJournal Journal;
    int Wakes = 0;
    SuppressionFilters Suppression{Folder.Path() / "SavedFilters.dat"};
    ViewFilter Filter{this->Context};
    cvbMailslot Mailslot{Mailslots, this->Time};
    ReceptionParts Parts{this->Context, Suppression, Filter, Signals, Journal};
    SyslogEndpoint Syslog{Datagrams, Parts, [this] { ++Wakes; }};
    ProcessingCycle Cycle{Mailslot, Syslog, Parts};
};

using ReceptionInMemory = ReceptionOver<FakeClock>;

}  // namespace tallyhorn
