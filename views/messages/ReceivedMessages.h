#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "records/EventTypes.h"
#include "views/messages/ConsolidatedTree.h"
#include "views/messages/MessageList.h"
#include "views/messages/MessageRows.h"
#include "views/messages/MessageStore.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// One channel: its store, its rows and the three lists that show them, by list index.
struct MessageChannel {
    explicit MessageChannel(Slot upperBound) : Messages(upperBound) {}
    MessageChannel(const MessageChannel&) = delete;
    MessageChannel& operator=(const MessageChannel&) = delete;

    /// Forgets everything; slots 0 to `upperBound` stand empty.
    void Clear(Slot upperBound);
    /// Takes every row away and keeps the texts.
    void ClearRows();

    MessageStore Messages;
    MessageRows Rows;
    std::array<MessageList, EventListCount> Lists{MessageList(Rows), MessageList(Rows), MessageList(Rows)};
};

/// All that the console has received and holds, and how it gets into the lists and the status bar.
/// User-interface thread only.
class ReceivedMessages {
public:
    ReceivedMessages(ServerDisplay& display, TimeSlices& slices);

    static constexpr Slot NetBiosUpperBound = 0;
    static constexpr Slot SyslogUpperBoundAtStart = 50000;
    static constexpr Slot SyslogUpperBoundAfterClear = 100;

    MessageChannel NetBios{NetBiosUpperBound};
    MessageChannel Syslog{SyslogUpperBoundAtStart};
    /// Of the syslog notifications that are shown.
    ConsolidatedTree Tree{Syslog.Rows};
    /// True while syslog messages are being taken away or read back: arrivals of both channels wait.
    bool SyslogDeleteInProgress = false;
    /// The view that the user touched last.
    ViewNumber ActiveView = 0;

    MessageList& List(ViewNumber view);

    /// Shows dates in this way in all rows added from now on.
    void SetDateStyle(const DateStyle& style);

    /// Whether dates are written and read with the day before the month.
    bool DayFirst() const { return dayFirst_; }

    /// Forgets every syslog message, the tree's leaves too.
    void ClearSyslog();

    /// Adds the row of a kept NetBIOS notification, whose text stands at `slot`; afterwards the record's
    /// TypeOfEvent holds its icon key.  A type without a picture gets its row all the same, without one: an
    /// alarm that nobody knows is the last that may go unseen.  Lets events run when the slice is over.
    void ParseMessageAdd(Slot slot, AlarmRecord& alarm);

    /// Keeps a syslog notification under the next slot that is free: its text and, if `shown`, its row and
    /// its leaf.  Afterwards the record is the one that the kept text tells, with the type's display form.
    void KeepSyslogMessage(AlarmRecord& alarm, bool shown);

    /// Takes every row and leaf of both channels away and keeps the texts.
    void ClearViews();
    /// Gives the text kept at `slot`, which has no row, its row again as ParseMessageAdd did, after reading
    /// it into `alarm`.  Nothing where no text is kept.
    void ShowNetBiosMessage(Slot slot, AlarmRecord& alarm);
    /// The same for a syslog notification; `now` dates a text that was not settled here.  Its leaf is noted,
    /// and stands in the tree after Tree.AddNoted.
    void ShowSyslogMessage(Slot slot, AlarmDate now, AlarmRecord& alarm);
    /// The leaf alone, for a slot that has its row.
    void NoteSyslogLeaf(Slot slot, AlarmDate now, AlarmRecord& alarm);

    /// Writes one channel's count into its status panel.
    void UpdateStatusCounts(const MessageChannel& channel);
    /// Enables the lists and the tree where they hold something and disables them elsewhere.
    void UpdateListViewStatus();

private:
    static void AddRecordToList(MessageChannel& channel, Slot slot, const AlarmRecord& alarm,
                                const std::string& iconKey);
    void AddNetBiosRow(Slot slot, AlarmRecord& alarm);
    Slot TakeSyslogSlot();
    void ParseSyslogMessage(Slot slot, std::string& message, bool addToListView, AlarmRecord& alarm);

    ServerDisplay& display_;
    TimeSlices& slices_;
    bool dayFirst_ = false;
};

/// Holds the arrivals of both channels back as long as it lives.  User-interface thread only.
class HoldArrivals {
public:
    explicit HoldArrivals(ReceivedMessages& received) : received_(received) {
        received_.SyslogDeleteInProgress = true;
    }
    ~HoldArrivals() { received_.SyslogDeleteInProgress = false; }
    HoldArrivals(const HoldArrivals&) = delete;
    HoldArrivals& operator=(const HoldArrivals&) = delete;

private:
    ReceivedMessages& received_;
};

}  // namespace tallyhorn
