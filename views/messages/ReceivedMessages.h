#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "records/EventTypes.h"
#include "views/messages/Channels.h"
#include "views/messages/ConsolidatedTree.h"
#include "views/messages/Gate.h"
#include "views/messages/MessageList.h"
#include "views/messages/MessageRows.h"
#include "views/messages/MessageStore.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// What the console holds of one channel: the texts, their rows and the three lists that show the rows.
struct MessageChannel {
    explicit MessageChannel(Channel channel)
        : Traits(TraitsOf(channel)), Messages(Traits.UpperBoundAtStart) {}
    MessageChannel(const MessageChannel&) = delete;
    MessageChannel& operator=(const MessageChannel&) = delete;

    /// Removes all rows and leaves the texts in the store.
    void ClearRows();

    const ChannelTraits& Traits;
    MessageStore Messages;
    MessageRows Rows;
    /// By list index.
    std::array<MessageList, EventListCount> Lists{MessageList(Rows), MessageList(Rows), MessageList(Rows)};
};

/// All messages that the console holds. Keeps stores, rows, lists and tree in agreement, and writes their
/// counts into the status bar.
class ReceivedMessages {
public:
    ReceivedMessages(ServerDisplay& display, TimeSlices& slices, tallyhorn::Gate& gate);

    MessageChannel NetBios{Channel::NetBios};
    MessageChannel Syslog{Channel::Syslog};
    /// The syslog messages that are shown.
    ConsolidatedTree Tree{Syslog.Rows};
    /// The view that the user clicked or operated by keyboard last.
    ViewNumber ActiveView = 0;

    /// Returns the gate, which decides whether arrivals may be handled now.
    tallyhorn::Gate& Gate() const { return gate_; }

    MessageChannel& In(Channel channel);
    const MessageChannel& In(Channel channel) const;
    /// Returns the list with the number `view`, which must not be the tree.
    MessageList& List(ViewNumber view);

    /// Sets how dates are shown in rows that are added from now on.
    void SetDateStyle(const DateStyle& style);

    /// Returns whether dates are written and read with the day before the month.
    bool DayFirst() const { return dayFirst_; }

    /// Reads a text that `channel` keeps into `alarm`. `now` is the date of a text that has none.
    void ReadKeptText(const MessageChannel& channel, std::string_view text, AlarmDate now,
                      AlarmRecord& alarm) const {
        channel.Traits.ReadKeptText(text, dayFirst_, now, alarm);
    }

    /// Removes all messages of `channel`, and its leaves.
    void Clear(MessageChannel& channel);

    /// Keeps a NetBIOS notification in the next free slot, which is returned: its text and, if `shown`, its
    /// row. compatibility: afterwards TypeOfEvent of a shown alarm holds its icon key, which the next
    /// notification without a type inherits. Lets pending events run if the slice is over.
    Slot KeepNetBiosMessage(std::string text, AlarmRecord& alarm, bool shown);

    /// Keeps a syslog notification in the next free slot: its settled text (see SettleMessage) and, if
    /// `shown`, its row and its leaf. Afterwards `alarm` is the record that the kept text yields.
    void KeepSyslogMessage(AlarmRecord& alarm, bool shown);

    /// Keeps a text from the backup file as KeepSyslogMessage does. Applies no filter. `now` is the date of
    /// a text that has none.
    void RestoreBackupMessage(std::string_view text, AlarmDate now, AlarmRecord& alarm);

    /// Removes all rows and leaves of both channels and leaves the texts in the stores.
    void ClearViews();
    /// Adds the row of the text at `slot`, which has none, after reading the text into `alarm`. A leaf is
    /// only noted and enters the tree at Tree.AddNoted. Does nothing if the slot is empty.
    void ShowMessage(MessageChannel& channel, Slot slot, AlarmDate now, AlarmRecord& alarm);
    /// Notes the leaf of a syslog message that has its row; Tree.AddNoted adds the leaf.
    void NoteSyslogLeaf(Slot slot, AlarmDate now, AlarmRecord& alarm);

    /// Writes the number of messages of `channel` into its status panel.
    void UpdateStatusCounts(const MessageChannel& channel);
    /// Enables each list, and the tree, if it has entries, and disables it otherwise.
    void UpdateListViewStatus();

private:
    /// Adds the row of an alarm. An unknown type gets a row too, without a picture, because an alarm that the
    /// console does not recognise must not be overlooked.
    static void AddRecordToList(MessageChannel& channel, Slot slot, const AlarmRecord& alarm);
    void AddNetBiosRow(Slot slot, AlarmRecord& alarm);
    void ParseMessageAdd(Slot slot, AlarmRecord& alarm);
    Slot TakeNetBiosSlot();
    Slot TakeSyslogSlot();
    void ParseSyslogMessage(Slot slot, std::string& message, bool addToListView, AlarmRecord& alarm);

    ServerDisplay& display_;
    TimeSlices& slices_;
    tallyhorn::Gate& gate_;
    bool dayFirst_ = false;
};

}  // namespace tallyhorn
