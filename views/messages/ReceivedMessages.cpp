#include "views/messages/ReceivedMessages.h"

#include <optional>
#include <string>
#include <utility>

#include "records/CanonicalText.h"
#include "records/NetBiosFormat.h"
#include "records/SyslogFormat.h"

namespace tallyhorn {

void MessageChannel::Clear(Slot upperBound) {
    ClearRows();
    Messages.Clear(upperBound);
}

void MessageChannel::ClearRows() {
    for (MessageList& list : Lists)
        list.Clear();
    Rows.Clear();
}

ReceivedMessages::ReceivedMessages(ServerDisplay& display, TimeSlices& slices)
    : display_(display), slices_(slices) {}

MessageList& ReceivedMessages::List(ViewNumber view) {
    return (IsSyslogView(view) ? Syslog : NetBios).Lists.at(ListOfView(view));
}

void ReceivedMessages::SetDateStyle(const DateStyle& style) {
    dayFirst_ = style.DayFirst;
    NetBios.Rows.SetDateStyle(style);
    Syslog.Rows.SetDateStyle(style);
}

void ReceivedMessages::ParseMessageAdd(Slot slot, AlarmRecord& alarm) {
    AddNetBiosRow(slot, alarm);
    slices_.LetRun();
}

void ReceivedMessages::AddNetBiosRow(Slot slot, AlarmRecord& alarm) {
    alarm.TypeOfEvent = EventTypeIconKey(alarm.TypeOfEvent);
    AddRecordToList(NetBios, slot, alarm, alarm.TypeOfEvent);
}

void ReceivedMessages::AddRecordToList(MessageChannel& channel, Slot slot, const AlarmRecord& alarm,
                                       const std::string& iconKey) {
    const std::int16_t list = ListForIconKey(iconKey);
    channel.Rows.Add(slot, alarm, PictureForIconKey(iconKey), list);
    channel.Lists.at(static_cast<std::size_t>(list)).Add(slot);
}

void ReceivedMessages::KeepSyslogMessage(AlarmRecord& alarm, bool shown) {
    MessageStore& messages = Syslog.Messages;
    const Slot slot = TakeSyslogSlot();
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

/// The record is settled first, so that row and leaf tell what the kept text tells.
void ReceivedMessages::ParseSyslogMessage(Slot slot, std::string& message, bool addToListView,
                                          AlarmRecord& alarm) {
    message = SettleMessage(alarm);
    if (addToListView)
        AddRecordToList(Syslog, slot, alarm, EventTypeIconKey(alarm.TypeOfEvent));
}

void ReceivedMessages::ClearSyslog() {
    Tree.Clear();
    Syslog.Clear(SyslogUpperBoundAfterClear);
}

void ReceivedMessages::ClearViews() {
    Tree.Clear();
    Syslog.ClearRows();
    NetBios.ClearRows();
}

void ReceivedMessages::ShowNetBiosMessage(Slot slot, AlarmRecord& alarm) {
    const std::string& text = NetBios.Messages.Text(slot);
    if (text.empty())
        return;
    ParseCurrentAlarm(text, alarm);
    AddNetBiosRow(slot, alarm);
}

void ReceivedMessages::ShowSyslogMessage(Slot slot, AlarmDate now, AlarmRecord& alarm) {
    const std::string& text = Syslog.Messages.Text(slot);
    if (text.empty())
        return;
    ReadStoredText(text, dayFirst_, now, alarm);
    AddRecordToList(Syslog, slot, alarm, EventTypeIconKey(alarm.TypeOfEvent));
    Tree.NoteMessage(slot, alarm);
}

void ReceivedMessages::NoteSyslogLeaf(Slot slot, AlarmDate now, AlarmRecord& alarm) {
    ReadStoredText(Syslog.Messages.Text(slot), dayFirst_, now, alarm);
    Tree.NoteMessage(slot, alarm);
}

void ReceivedMessages::UpdateStatusCounts(const MessageChannel& channel) {
    const std::string count = std::to_string(channel.Messages.MessageCount());
    if (&channel == &NetBios)
        display_.ShowPanel(StatusPanel::NetBiosCount, count + " NetBIOS Message(s)");
    else
        display_.ShowPanel(StatusPanel::SyslogCount, count + " Syslog Message(s)");
}

void ReceivedMessages::UpdateListViewStatus() {
    for (ViewNumber view = 0; view < ConsolidatedView; ++view)
        display_.EnableView(view, List(view).Size() > 0);
    display_.EnableView(ConsolidatedView, !Tree.IsEmpty());
}

}  // namespace tallyhorn
