#include "views/MessageCommands.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "views/messages/LongWork.h"

namespace tallyhorn {
namespace {

constexpr std::string_view FilterActiveText = "You cannot delete messages while a filter is active.";
constexpr std::string_view DeleteQuestion = "Are you sure you want to delete the messages you have selected?";
constexpr std::string_view DeleteLeafQuestion =
    "Are you sure you want to delete the message you have selected?";
constexpr std::string_view DeleteBranchQuestion =
    "Are you sure you want to delete all the messages under the tree branch you selected?";
constexpr std::chrono::milliseconds Pause{1};
/// Takes about as long as a slice.
constexpr std::size_t LeavesRemovedTogether = 10'000;

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

void MessageCommands::DeleteMessages(ViewNumber view) {
    // compatibility: a NetBIOS list that was touched last while the syslog page is in front names no list of
    // that page, so nothing is deleted.
    const bool listIsElsewhere =
        PageOfView(view) == MessagePage::NetBios && display_.CurrentPage() == MessagePage::Syslog;
    if (listIsElsewhere)
        RefuseWhileFiltered();
    else
        DeleteMessagesIn(view);
}

void MessageCommands::DeleteMessagesIn(ViewNumber view) {
    if (RefuseWhileFiltered())
        return;
    received_.ActiveView = view;
    switch (PageOfView(view)) {
        case MessagePage::NetBios:
            return DeleteNetBiosMessages(view);
        case MessagePage::Syslog:
            return DeleteSyslogMessages(view);
        case MessagePage::Consolidated:
            return DeleteTreeSelection();
    }
}

void MessageCommands::DeleteNetBiosMessages(ViewNumber view) {
    MessageList& list = received_.List(view);
    if (list.SelectedCount() == 0 || !boxes_.Confirm(DeleteQuestion))
        return;
    LongWork work(display_, slices_, list.SelectedCount());
    const Gate::PollStop stop(received_.Gate());
    display_.ShowView(view, false);
    RemoveFromStore(received_.NetBios, list.RemoveSelected(), work);
    display_.ShowView(view, true);
    received_.UpdateStatusCounts(received_.NetBios);
    received_.UpdateListViewStatus();
}

void MessageCommands::DeleteSyslogMessages(ViewNumber view) {
    MessageList& list = received_.List(view);
    const Gate::Hold hold(received_.Gate());
    if (list.SelectedCount() == 0 || !boxes_.Confirm(DeleteQuestion))
        return;
    LongWork work(display_, slices_, 2 * list.SelectedCount());
    display_.ShowView(view, false);
    display_.ShowView(ConsolidatedView, false);
    RemoveFromSyslog(list.RemoveSelected(), work);
    display_.ShowView(view, true);
    display_.ShowView(ConsolidatedView, true);
    received_.UpdateStatusCounts(received_.Syslog);
    received_.UpdateListViewStatus();
}

void MessageCommands::DeleteTreeSelection() {
    const Gate::Hold hold(received_.Gate());
    const TreeNode node = received_.Tree.SelectedNode();
    if (node.IsRoot() || !boxes_.Confirm(node.IsLeaf() ? DeleteLeafQuestion : DeleteBranchQuestion))
        return;
    LongWork work(display_, slices_, 2 * received_.Tree.Count(node));
    std::array<std::vector<Slot>, EventListCount> covered;
    for (const Slot slot : received_.Tree.SlotsUnder(node))
        covered.at(static_cast<std::size_t>(ListOf(received_.Syslog.Rows[slot].Type))).push_back(slot);
    ShowSyslogViews(false);
    // List by list in the order of the rows: the order in which the slots are freed and later reused.
    std::vector<Slot> slots;
    for (std::size_t list = 0; list < covered.size(); ++list) {
        const std::vector<Slot> gone = received_.Syslog.Lists.at(list).Remove(covered.at(list));
        slots.insert(slots.end(), gone.begin(), gone.end());
    }
    RemoveFromSyslog(slots, work);
    ShowSyslogViews(true);
    received_.UpdateStatusCounts(received_.Syslog);
    received_.UpdateListViewStatus();
}

/// Removes leaves before rows, since a leaf reads its row.  Leaves take about half of the time.
void MessageCommands::RemoveFromSyslog(const std::vector<Slot>& slots, LongWork& work) {
    for (std::size_t i = 0; i < slots.size(); i += LeavesRemovedTogether) {
        const std::size_t count = std::min(LeavesRemovedTogether, slots.size() - i);
        received_.Tree.RemoveLeaves(std::span(slots).subspan(i, count));
        work.Advance(count);
    }
    RemoveFromStore(received_.Syslog, slots, work);
}

/// The views are hidden meanwhile: this is faster, and the user cannot act on rows that are being deleted.
void MessageCommands::RemoveFromStore(MessageChannel& channel, const std::vector<Slot>& slots,
                                      LongWork& work) {
    for (std::size_t i = 0; i < slots.size(); ++i) {
        // Removing rows in groups is faster.  No row can be added at a slot before the slot is freed too.
        if (i % MessageRows::RemovedTogether == 0)
            channel.Rows.Remove(
                std::span(slots).subspan(i, std::min(MessageRows::RemovedTogether, slots.size() - i)));
        channel.Messages.Free(slots[i]);
        if (work.Advance())
            clock_.Sleep(Pause);
    }
}

void MessageCommands::ShowSyslogViews(bool shown) {
    for (ViewNumber view = received_.Syslog.Traits.FirstView; view <= ConsolidatedView; ++view)
        display_.ShowView(view, shown);
}

void MessageCommands::ClearAllMessages() {
    if (RefuseWhileFiltered())
        return;
    MessageChannel& channel = received_.In(ChannelOfPage(display_.CurrentPage()));
    if (boxes_.Confirm(channel.Traits.ClearQuestion)) {
        const Gate::Hold hold(received_.Gate());
        received_.Clear(channel);
        received_.UpdateStatusCounts(channel);
    }
    received_.UpdateListViewStatus();
}

}  // namespace tallyhorn
