#include "views/ReceivedMessages.h"

#include <string>

namespace tallyhorn {

void MessageChannel::Clear(Slot upperBound) {
    for (MessageList& list : Lists)
        list.Clear();
    Rows.Clear();
    Messages.Clear(upperBound);
}

ReceivedMessages::ReceivedMessages(ServerDisplay& display, TimeSlices& slices)
    : display_(display), slices_(slices) {}

MessageList& ReceivedMessages::List(ViewNumber view) {
    return (IsSyslogView(view) ? Syslog : NetBios).Lists.at(ListOfView(view));
}

void ReceivedMessages::SetDateStyle(const DateStyle& style) {
    NetBios.Rows.SetDateStyle(style);
    Syslog.Rows.SetDateStyle(style);
}

void ReceivedMessages::ParseMessageAdd(Slot slot, AlarmRecord& alarm) {
    AddRecordToList(NetBios, slot, alarm);
}

void ReceivedMessages::AddRecordToList(MessageChannel& channel, Slot slot, AlarmRecord& alarm) {
    alarm.TypeOfEvent = EventTypeIconKey(alarm.TypeOfEvent);
    const std::int16_t list = ListForIconKey(alarm.TypeOfEvent);
    channel.Rows.Add(slot, alarm, PictureForIconKey(alarm.TypeOfEvent), list);
    channel.Lists.at(static_cast<std::size_t>(list)).Add(slot);
    slices_.LetRun();
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
        display_.EnableList(view, List(view).Size() > 0);
}

}  // namespace tallyhorn
