#include "views/MessageCommands.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace tallyhorn {
namespace {

constexpr std::string_view FilterActiveText = "You cannot delete messages while a filter is active.";
constexpr std::string_view DeleteQuestion = "Are you sure you want to delete the messages you have selected?";
constexpr std::string_view ClearNetBiosQuestion =
    "Are you sure you want to erase all of the NetBIOS messages received?";
constexpr std::string_view ClearSyslogQuestion =
    "Are you sure you want to erase all of the syslog messages received?";

constexpr std::chrono::milliseconds Pause{1};

}  // namespace

MessageCommands::MessageCommands(ReceivedMessages& received, ServerDisplay& display, MessageBoxes& boxes,
                                 TimeSlices& slices, Clock& clock, const ViewFilterState& viewFilter)
    : received_(received),
      display_(display),
      boxes_(boxes),
      slices_(slices),
      clock_(clock),
      viewFilter_(viewFilter) {}

bool MessageCommands::RefuseWhileFiltered() {
    if (!viewFilter_.InForce())
        return false;
    boxes_.Warn(FilterActiveText);
    return true;
}

void MessageCommands::DeleteMessages() {
    if (RefuseWhileFiltered() || received_.ActiveView >= ConsolidatedView)
        return;
    if (IsSyslogView(received_.ActiveView))
        DeleteSyslogMessages();
    // A NetBIOS list touched last while the syslog page is in front names no list of that page: nothing to
    // do.
    else if (display_.CurrentPage() != MessagePage::Syslog)
        DeleteNetBiosMessages();
}

void MessageCommands::DeleteNetBiosMessages() {
    const ViewNumber view = received_.ActiveView;
    if (received_.List(view).SelectedCount() == 0 || !boxes_.Confirm(DeleteQuestion))
        return;
    display_.EnablePollingTimer(false);
    RemoveSelected(received_.NetBios, view);
    received_.UpdateStatusCounts(received_.NetBios);
    received_.UpdateListViewStatus();
    display_.EnablePollingTimer(true);
}

void MessageCommands::DeleteSyslogMessages() {
    const ViewNumber view = received_.ActiveView;
    syslogDeleteInProgress_ = true;
    if (received_.List(view).SelectedCount() > 0 && boxes_.Confirm(DeleteQuestion)) {
        RemoveSelected(received_.Syslog, view);
        received_.UpdateStatusCounts(received_.Syslog);
        received_.UpdateListViewStatus();
    }
    syslogDeleteInProgress_ = false;
}

/// The list is hidden meanwhile, both for speed and so that nobody acts on rows that are going.
void MessageCommands::RemoveSelected(MessageChannel& channel, ViewNumber view) {
    display_.ShowList(view, false);
    const std::vector<Slot> slots = received_.List(view).RemoveSelected();
    for (std::size_t i = 0; i < slots.size(); ++i) {
        // Rows go faster in groups; until its slot is free too, none can come in a row's place.
        if (i % MessageRows::RemovedTogether == 0)
            channel.Rows.Remove(
                std::span(slots).subspan(i, std::min(MessageRows::RemovedTogether, slots.size() - i)));
        channel.Messages.Free(slots[i]);
        if (slices_.LetRun())
            clock_.Sleep(Pause);
    }
    display_.ShowList(view, true);
}

void MessageCommands::ClearAllMessages() {
    if (RefuseWhileFiltered())
        return;
    if (display_.CurrentPage() == MessagePage::NetBios) {
        if (boxes_.Confirm(ClearNetBiosQuestion)) {
            received_.NetBios.Clear(ReceivedMessages::NetBiosUpperBound);
            received_.UpdateStatusCounts(received_.NetBios);
        }
    } else if (boxes_.Confirm(ClearSyslogQuestion)) {
        syslogDeleteInProgress_ = true;
        received_.Syslog.Clear(ReceivedMessages::SyslogUpperBoundAfterClear);
        received_.UpdateStatusCounts(received_.Syslog);
        syslogDeleteInProgress_ = false;
    }
    received_.UpdateListViewStatus();
}

}  // namespace tallyhorn
