#include "views/messages/ReceivedMessages.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "records/CanonicalText.h"

namespace tallyhorn {

void MessageChannel::ClearRows() {
    for (MessageList& list : Lists)
        list.Clear();
    Rows.Clear();
}

ReceivedMessages::ReceivedMessages(ServerDisplay& display, TimeSlices& slices)
    : display_(display), slices_(slices) {}

MessageChannel& ReceivedMessages::In(Channel channel) {
    return channel == Channel::NetBios ? NetBios : Syslog;
}

const MessageChannel& ReceivedMessages::In(Channel channel) const {
    return channel == Channel::NetBios ? NetBios : Syslog;
}

MessageList& ReceivedMessages::List(ViewNumber view) {
    return In(ChannelOfView(view)).Lists.at(ListOfView(view));
}

void ReceivedMessages::SetActiveView(ViewNumber view) {
    activeView_ = view;
    display_.ShowActiveView(view, false);
}

void ReceivedMessages::SetDateStyle(const DateStyle& style) {
    dayFirst_ = style.DayFirst;
    NetBios.Rows.SetDateStyle(style);
    Syslog.Rows.SetDateStyle(style);
}

void ReceivedMessages::Clear(MessageChannel& channel) {
    if (channel.Traits.HasTree)
        Tree.Clear();
    channel.ClearRows();
    channel.Messages.Clear(channel.Traits.UpperBoundAfterClear);
}

// ---- keeping

Slot ReceivedMessages::KeepNetBiosMessage(std::string text, AlarmRecord& alarm, bool shown) {
    const Slot slot = TakeNetBiosSlot();
    KeepNetBiosAt(slot, std::move(text), alarm, shown);
    return slot;
}

void ReceivedMessages::KeepNetBiosAt(Slot slot, std::string text, AlarmRecord& alarm, bool shown) {
    NetBios.Messages.Put(slot, std::move(text));
    if (shown)
        ParseMessageAdd(slot, alarm);
}

Slot ReceivedMessages::TakeNetBiosSlot() {
    const std::optional<Slot> freed = NetBios.Messages.TakeFreeSlot();
    return freed ? *freed : NetBios.Messages.Grow();
}

void ReceivedMessages::ParseMessageAdd(Slot slot, AlarmRecord& alarm) {
    AddNetBiosRow(slot, alarm);
    slices_.LetRun();
}

void ReceivedMessages::KeepSyslogMessage(AlarmRecord& alarm, bool shown) {
    KeepSyslogAt(TakeSyslogSlot(), alarm, shown);
}

void ReceivedMessages::KeepSyslogAt(Slot slot, AlarmRecord& alarm, bool shown) {
    MessageStore& messages = Syslog.Messages;
    std::string message;
    ParseSyslogMessage(slot, message, shown, alarm);
    messages.Put(slot, std::move(message));
    if (shown)
        Tree.AddMessageToConsolidatedTree(slot, alarm);
    if (messages.MessageCount() == messages.UpperBound() - 1)
        messages.GrowTo(messages.UpperBound() * 2);
}

Slot ReceivedMessages::TakeSyslogSlot() {
    const std::optional<Slot> freed = Syslog.Messages.TakeFreeSlot();
    return freed ? *freed : Syslog.Messages.MessageCount();
}

/// Settles the record first, so that the row and the leaf show what the kept text contains.
void ReceivedMessages::ParseSyslogMessage(Slot slot, std::string& message, bool addToListView,
                                          AlarmRecord& alarm) {
    message = SettleMessage(alarm);
    if (addToListView)
        AddRecordToList(Syslog, slot, alarm);
}

void ReceivedMessages::RestoreBackupMessage(std::string_view text, AlarmDate now, AlarmRecord& alarm) {
    ReadKeptText(Syslog, text, now, alarm);
    KeepSyslogMessage(alarm, true);
}

void ReceivedMessages::RestoreMessage(MessageChannel& channel, Slot slot, std::string text, AlarmDate now,
                                      AlarmRecord& alarm) {
    MessageStore& messages = channel.Messages;
    // KeepSyslogAt lets the store grow only after it has reached a certain number of messages.
    if (channel.Traits.HasTree) {
        while (messages.UpperBound() - 1 <= slot)
            messages.GrowTo(messages.UpperBound() * 2);
    } else {
        messages.GrowTo(std::max(slot, messages.UpperBound()));
    }
    ReadKeptText(channel, text, now, alarm);
    if (channel.Traits.HasTree)
        KeepSyslogAt(slot, alarm, true);
    else
        KeepNetBiosAt(slot, std::move(text), alarm, true);
}

// ---- showing

void ReceivedMessages::AddNetBiosRow(Slot slot, AlarmRecord& alarm) {
    AddRecordToList(NetBios, slot, alarm);
    alarm.TypeOfEvent = EventTypeIconKey(alarm.TypeOfEvent);
}

void ReceivedMessages::AddRecordToList(MessageChannel& channel, Slot slot, const AlarmRecord& alarm) {
    const EventType type = EventTypeOf(alarm.TypeOfEvent);
    channel.Rows.Add(slot, alarm, type);
    channel.Lists.at(static_cast<std::size_t>(ListOf(type))).Add(slot);
}

void ReceivedMessages::ClearViews() {
    Tree.Clear();
    Syslog.ClearRows();
    NetBios.ClearRows();
}

void ReceivedMessages::ShowMessage(MessageChannel& channel, Slot slot, AlarmDate now, AlarmRecord& alarm) {
    const std::string& text = channel.Messages.Text(slot);
    if (text.empty())
        return;
    ReadKeptText(channel, text, now, alarm);
    if (channel.Traits.HasTree) {
        AddRecordToList(channel, slot, alarm);
        Tree.NoteMessage(slot, alarm);
    } else {
        AddNetBiosRow(slot, alarm);
    }
}

void ReceivedMessages::NoteSyslogLeaf(Slot slot, AlarmDate now, AlarmRecord& alarm) {
    ReadKeptText(Syslog, Syslog.Messages.Text(slot), now, alarm);
    Tree.NoteMessage(slot, alarm);
}

void ReceivedMessages::UpdateStatusCounts(const MessageChannel& channel) {
    std::string count = std::to_string(channel.Messages.MessageCount());
    display_.ShowPanel(channel.Traits.CountPanel, count.append(channel.Traits.CountText));
}

void ReceivedMessages::UpdateListViewStatus() {
    for (ViewNumber view = 0; view < ConsolidatedView; ++view)
        display_.EnableView(view, List(view).Size() > 0);
    display_.EnableView(ConsolidatedView, !Tree.IsEmpty());
}

}  // namespace tallyhorn
