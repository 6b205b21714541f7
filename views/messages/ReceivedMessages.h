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

    /// Removes all rows; the texts stay in the store.
    void ClearRows();

    const ChannelTraits& Traits;
    MessageStore Messages;
    MessageRows Rows;
    /// The lists, indexed by EventList.
    std::array<MessageList, EventListCount> Lists{MessageList(Rows), MessageList(Rows), MessageList(Rows)};
};

/// Owns all messages that the console keeps. Keeps stores, rows, lists and tree consistent, and writes the
/// numbers of messages into the status bar.
class ReceivedMessages {
public:
    ReceivedMessages(ServerDisplay& display, TimeSlices& slices);

    MessageChannel NetBios{Channel::NetBios};
    MessageChannel Syslog{Channel::Syslog};
    /// The tree of the syslog messages that are shown.
    ConsolidatedTree Tree{Syslog.Rows};

    /// Returns the view that the user clicked or operated by keyboard last.
    ViewNumber ActiveView() const { return activeView_; }
    void SetActiveView(ViewNumber view);

    MessageChannel& In(Channel channel);
    const MessageChannel& In(Channel channel) const;
    /// Returns the list with the number `view`, which must not be the tree.
    MessageList& List(ViewNumber view);

    /// Sets how dates are shown in rows that are added later.
    void SetDateStyle(const DateStyle& style);

    /// Returns whether dates are written and read with the day before the month.
    bool DayFirst() const { return dayFirst_; }

    /// Reads a text that `channel` keeps into `alarm`. A text without a date gets the date `now`.
    void ReadKeptText(const MessageChannel& channel, std::string_view text, AlarmDate now,
                      AlarmRecord& alarm) const {
        channel.Traits.ReadKeptText(text, dayFirst_, now, alarm);
    }

    /// Removes all messages of `channel`, including their leaves.
    void Clear(MessageChannel& channel);

    /// Keeps a NetBIOS notification in the next free slot, which is returned: its text and, if `shown`, its
    /// row. If `shown`, lets pending events run when the slice is over. compatibility: afterwards TypeOfEvent
    /// of a shown alarm is its icon key, which the next notification without a type inherits.
    Slot KeepNetBiosMessage(std::string text, AlarmRecord& alarm, bool shown);

    /// Keeps a syslog notification in the next free slot: its settled text (see SettleMessage) and, if
    /// `shown`, its row and its leaf. Afterwards `alarm` is the record that is read from the kept text.
    void KeepSyslogMessage(AlarmRecord& alarm, bool shown);

    /// Keeps a text from the backup file as KeepSyslogMessage does. Applies no filter. A text without a date
    /// gets the date `now`.
    void RestoreBackupMessage(std::string_view text, AlarmDate now, AlarmRecord& alarm);

    /// Keeps a text in `slot`, which must be empty, with its row and its leaf.  Applies no filter.  After the
    /// last call, MessageStore::QueueGaps makes the slots between the messages available again.
    void RestoreMessage(MessageChannel& channel, Slot slot, std::string text, AlarmDate now,
                        AlarmRecord& alarm);

    /// Removes all rows and leaves of both channels; the texts stay in the stores.
    void ClearViews();
    /// Reads the text at `slot` into `alarm` and adds its row; the slot must not have a row yet. A syslog
    /// message's leaf is only noted; Tree.AddNoted adds it. Does nothing if the slot is empty.
    void ShowMessage(MessageChannel& channel, Slot slot, AlarmDate now, AlarmRecord& alarm);
    /// Notes the leaf of a syslog message that has its row; Tree.AddNoted adds the leaf.
    void NoteSyslogLeaf(Slot slot, AlarmDate now, AlarmRecord& alarm);

    /// Writes the number of messages of `channel` into its status panel.
    void UpdateStatusCounts(const MessageChannel& channel);
    /// Enables each list and the tree if it has entries, and disables it otherwise.
    void UpdateListViewStatus();

private:
    /// Adds the row of an alarm. An unknown type gets a row too, without a picture, because an alarm that the
    /// console does not recognise must not be overlooked.
    static void AddRecordToList(MessageChannel& channel, Slot slot, const AlarmRecord& alarm);
    void AddNetBiosRow(Slot slot, AlarmRecord& alarm);
    void KeepNetBiosAt(Slot slot, std::string text, AlarmRecord& alarm, bool shown);
    void KeepSyslogAt(Slot slot, AlarmRecord& alarm, bool shown);
    void ParseMessageAdd(Slot slot, AlarmRecord& alarm);
    Slot TakeNetBiosSlot();
    Slot TakeSyslogSlot();
    void ParseSyslogMessage(Slot slot, std::string& message, bool addToListView, AlarmRecord& alarm);

    ServerDisplay& display_;
    TimeSlices& slices_;
    bool dayFirst_ = false;
    ViewNumber activeView_ = 0;
};

}  // namespace tallyhorn
