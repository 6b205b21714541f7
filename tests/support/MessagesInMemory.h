#pragma once

#include "records/NetBiosFormat.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeDisplay.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FakePendingEvents.h"
#include "views/messages/Gate.h"
#include "views/messages/MessageContext.h"

namespace tallyhorn {

/// The messages of a console with a fake window, fake message boxes and a clock of type ClockType.
template <typename ClockType>
struct MessagesOver {
    /// Keeps the record of a syslog notification; `shown` is false if the view filter hides it.
    void KeepSyslog(AlarmRecord record, bool shown = true) { Received.KeepSyslogMessage(record, shown); }
    /// Keeps the text of a mailslot notification; `shown` is false if the view filter hides it.
    Slot KeepNetBios(const std::string& text, bool shown = true) {
        ParseCurrentAlarm(text, Alarm);
        return Received.KeepNetBiosMessage(text, Alarm, shown);
    }
    std::size_t RowCount(const MessageChannel& channel) const {
        std::size_t rows = 0;
        for (const MessageList& list : channel.Lists)
            rows += list.Size();
        return rows;
    }

    ClockType Time;
    FakePendingEvents Events;
    FakeDisplay Display;
    FakeMessageBoxes Boxes;
    AlarmRecord Alarm;  ///< the current alarm
    TimeSlices Slices{Time, Events};
    Gate TheGate;
    ReceivedMessages Received{Display, Slices};
    const MessageContext Context{Received, Display, Boxes, Slices, TheGate, Time, Alarm};
};

using MessagesInMemory = MessagesOver<FakeClock>;

}  // namespace tallyhorn
