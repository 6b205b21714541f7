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
/// The number of leaves whose removal takes about as long as a slice.
constexpr std::size_t LeavesRemovedTogether = 10'000;

/// Removes the rows that were selected when the question opened.  If the same rows are still selected, uses
/// RemoveSelected, which need not search for them.
std::vector<Slot> RemoveChosen(MessageList& list, const std::vector<Slot>& chosen) {
    return list.SelectedSlots() == chosen ? list.RemoveSelected() : list.Remove(chosen);
}

}  // namespace

bool MessageCommands::RefuseWhileFiltered() {
    if (!viewFilter_.InForce())
        return false;
    context_.Boxes.Warn(FilterActiveText);
    return true;
}

void MessageCommands::DeleteMessages(ViewNumber view, MessagePage page) {
    // compatibility: nothing is deleted if the syslog page is in front but the active view is a NetBIOS list.
    const bool listIsElsewhere = PageOfView(view) == MessagePage::NetBios && page == MessagePage::Syslog;
    if (listIsElsewhere || !context_.Display.HasPage(PageOfView(view)))
        RefuseWhileFiltered();
    else
        DeleteMessagesIn(view);
}

void MessageCommands::DeleteMessagesIn(ViewNumber view) {
    if (RefuseWhileFiltered())
        return;
    switch (PageOfView(view)) {
        case MessagePage::NetBios:
            return DeleteNetBiosMessages(view);
        case MessagePage::Syslog:
            return DeleteSyslogMessages(view);
        case MessagePage::Consolidated:
            return DeleteTreeSelection();
    }
}

/// While the question is open, only the rows that it is about are drawn as selected.
bool MessageCommands::ConfirmAbout(ViewNumber view, std::string_view question) {
    context_.Received.SetActiveView(view);
    context_.Display.BringToFront(view);
    context_.Display.ShowActiveView(view, true);
    const bool yes = context_.Boxes.Confirm(question);
    context_.Display.ShowActiveView(view, false);
    return yes;
}

void MessageCommands::DeleteNetBiosMessages(ViewNumber view) {
    MessageList& list = context_.Received.List(view);
    const std::vector<Slot> chosen = list.SelectedSlots();
    if (chosen.empty() || !ConfirmAbout(view, DeleteQuestion))
        return;
    LongWork work(context_.Display, context_.Slices, chosen.size());
    const Gate::PollStop stop(context_.Gate);
    context_.Display.ShowView(view, false);
    RemoveFromStore(context_.Received.NetBios, RemoveChosen(list, chosen), work);
    context_.Display.ShowView(view, true);
    context_.Received.UpdateStatusCounts(context_.Received.NetBios);
    context_.Received.UpdateListViewStatus();
}

void MessageCommands::DeleteSyslogMessages(ViewNumber view) {
    MessageList& list = context_.Received.List(view);
    const std::vector<Slot> chosen = list.SelectedSlots();
    if (chosen.empty() || !ConfirmAbout(view, DeleteQuestion))
        return;
    const Gate::Hold hold(context_.Gate);
    LongWork work(context_.Display, context_.Slices, 2 * chosen.size());
    context_.Display.ShowView(view, false);
    context_.Display.ShowView(ConsolidatedView, false);
    RemoveFromSyslog(RemoveChosen(list, chosen), work);
    context_.Display.ShowView(view, true);
    context_.Display.ShowView(ConsolidatedView, true);
    context_.Received.UpdateStatusCounts(context_.Received.Syslog);
    context_.Received.UpdateListViewStatus();
}

void MessageCommands::DeleteTreeSelection() {
    const TreeNode node = context_.Received.Tree.SelectedNode();
    if (node.IsRoot())
        return;
    const std::vector<Slot> chosen = context_.Received.Tree.SlotsUnder(node);
    if (!ConfirmAbout(ConsolidatedView, node.IsLeaf() ? DeleteLeafQuestion : DeleteBranchQuestion))
        return;
    const Gate::Hold hold(context_.Gate);
    LongWork work(context_.Display, context_.Slices, 2 * chosen.size());
    ShowSyslogViews(false);
    RemoveFromSyslog(RemoveSyslogRows(chosen), work);
    ShowSyslogViews(true);
    context_.Received.UpdateStatusCounts(context_.Received.Syslog);
    context_.Received.UpdateListViewStatus();
}

/// Removes the rows list by list and returns their slots in that order.  The slots are freed and later reused
/// in the same order.
std::vector<Slot> MessageCommands::RemoveSyslogRows(const std::vector<Slot>& slots) {
    std::array<std::vector<Slot>, EventListCount> covered;
    for (const Slot slot : slots)
        covered.at(static_cast<std::size_t>(ListOf(context_.Received.Syslog.Rows[slot].Type)))
            .push_back(slot);
    std::vector<Slot> removed;
    for (std::size_t list = 0; list < covered.size(); ++list) {
        const std::vector<Slot> gone = context_.Received.Syslog.Lists.at(list).Remove(covered.at(list));
        removed.insert(removed.end(), gone.begin(), gone.end());
    }
    return removed;
}

/// Removes leaves before rows, since a leaf reads its row.  Removing the leaves takes about half of the time.
void MessageCommands::RemoveFromSyslog(const std::vector<Slot>& slots, LongWork& work) {
    for (std::size_t i = 0; i < slots.size(); i += LeavesRemovedTogether) {
        const std::size_t count = std::min(LeavesRemovedTogether, slots.size() - i);
        context_.Received.Tree.RemoveLeaves(std::span(slots).subspan(i, count));
        work.Advance(count);
    }
    RemoveFromStore(context_.Received.Syslog, slots, work);
}

/// Removes the rows and texts of `slots`.  The caller must have hidden the views: this is faster, and the
/// user cannot act on rows that are being deleted.
void MessageCommands::RemoveFromStore(MessageChannel& channel, const std::vector<Slot>& slots,
                                      LongWork& work) {
    for (std::size_t i = 0; i < slots.size(); ++i) {
        // Removing rows in groups is faster.  A row may be removed before its slot is freed, because no new
        // row gets the slot until then.
        if (i % MessageRows::RemovedTogether == 0)
            channel.Rows.Remove(
                std::span(slots).subspan(i, std::min(MessageRows::RemovedTogether, slots.size() - i)));
        channel.Messages.Free(slots[i]);
        if (work.Advance())
            context_.Time.Sleep(Pause);
    }
}

void MessageCommands::ShowSyslogViews(bool shown) {
    for (ViewNumber view = context_.Received.Syslog.Traits.FirstView; view <= ConsolidatedView; ++view)
        context_.Display.ShowView(view, shown);
}

void MessageCommands::ClearAllMessages(MessagePage page) {
    if (RefuseWhileFiltered())
        return;
    MessageChannel& channel = context_.Received.In(ChannelOfPage(page));
    if (context_.Boxes.ConfirmErasing(channel.Traits.ClearQuestion)) {
        const Gate::Hold hold(context_.Gate);
        context_.Received.Clear(channel);
        context_.Received.UpdateStatusCounts(channel);
    }
    context_.Received.UpdateListViewStatus();
}

}  // namespace tallyhorn
