#include "storage/MessageExport.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "records/AnsiText.h"
#include "records/DateDisplay.h"
#include "storage/ExportFile.h"
#include "views/messages/LongWork.h"

namespace tallyhorn {
namespace {

constexpr std::string_view BranchQuestion = "Are you sure you want to export this tree branch to a file?";
constexpr std::string_view FileTypes = "Text files (*.txt)|*.txt";

std::string CaptionOf(MessagePage page) {
    std::string caption(PageCaptions.at(static_cast<std::size_t>(page)));
    std::erase(caption, '&');
    return caption;
}

/// Returns the day in the form "25-Dec-2008".
std::string DayText(AlarmDate date) {
    const CivilDateTime parts = SplitAlarmDate(date);
    std::string text = PadWithZeros(std::to_string(parts.Day), 2);
    text.append("-").append(ShortMonthName(parts.Month)).append("-");
    return text.append(std::to_string(parts.Year));
}

std::vector<Slot> KeptSlots(const MessageStore& messages) {
    std::vector<Slot> slots;
    for (Slot slot = 0; slot <= messages.UpperBound(); ++slot) {
        if (!Trim(messages.Text(slot)).empty())
            slots.push_back(slot);
    }
    return slots;
}

}  // namespace

MessageExport::MessageExport(const Parts& parts, std::filesystem::path folder,
                             std::vector<std::string> ownFiles)
    : parts_(parts), folder_(std::move(folder)), ownFiles_(std::move(ownFiles)) {}

/// Does nothing if no page is shown.
void MessageExport::ExportMessages(MessagePage page) {
    switch (page) {
        case MessagePage::NetBios:
            return ExportNetBiosMessages();
        case MessagePage::Syslog:
            return ExportSyslogMessages();
        case MessagePage::Consolidated:
            return ExportTreeBranch();
    }
}

void MessageExport::ExportChannel(const MessageChannel& channel) {
    if (channel.Messages.MessageCount() == channel.Traits.CountNotExported || !AskAboutChannel(channel))
        return;
    if (const auto file = AskFile(channel.Traits.Page))
        Export(channel, *file, KeptSlots(channel.Messages));
}

bool MessageExport::AskAboutChannel(const MessageChannel& channel) {
    return parts_.Boxes.Confirm("Are you sure you want to export all " + CaptionOf(channel.Traits.Page) +
                                " to a file?");
}

std::optional<std::filesystem::path> MessageExport::AskFile(MessagePage page) {
    std::string name = CaptionOf(page) + "_" + DayText({parts_.Time.LocalSeconds()}) + ".txt";
    std::replace(name.begin(), name.end(), ' ', '_');
    return parts_.Dialog.AskFile(folder_ / name, FileTypes);
}

/// Exports the node that is selected when the save dialog has closed: events run while the dialog is open,
/// and may delete the node that was selected before.
void MessageExport::ExportTreeBranch() {
    const ConsolidatedTree& tree = parts_.Received.Tree;
    if (tree.SelectedNode().IsRoot() || !parts_.Boxes.Confirm(BranchQuestion))
        return;
    const auto file = AskFile(MessagePage::Consolidated);
    const TreeNode node = tree.SelectedNode();
    if (!file || node.IsRoot())
        return;
    Slots leaves;
    ExportTreeBranchNode(node, leaves);
    Export(parts_.Received.Syslog, *file, leaves);
}

/// Adds to `leaves` the slots of the leaves at or below the node, in the order in which a fully expanded tree
/// shows them.
void MessageExport::ExportTreeBranchNode(TreeNode node, Slots& leaves) {
    if (node.IsLeaf()) {
        leaves.push_back(node.LeafSlot());
        return;
    }
    ConsolidatedTree& tree = parts_.Received.Tree;
    tree.SortChildren(node);
    for (std::size_t i = 0; i < tree.ChildCount(node); ++i)
        ExportTreeBranchNode(tree.ChildAt(node, i), leaves);
}

void MessageExport::Export(const MessageChannel& channel, const std::filesystem::path& file,
                           const Slots& slots) {
    if (const std::optional<SystemError> error = Write(channel, file, slots))
        parts_.Boxes.Warn(std::string(channel.Traits.ExportFailure) + std::to_string(error->Number) + ":\t" +
                          error->Text);
}

/// The file is a snapshot: no events have run since the slots were collected, and arrivals are held while it
/// is written.
std::optional<SystemError> MessageExport::Write(const MessageChannel& channel,
                                                const std::filesystem::path& path, const Slots& slots) {
    if (IsOwnFile(path)) {
        const std::error_code denied = std::make_error_code(std::errc::permission_denied);
        return SystemError{denied.value(), denied.message()};
    }
    const Gate::Hold hold(parts_.Gate);
    LongWork work(parts_.Display, parts_.Slices, slots.size());
    ExportFile file(path, parts_.Received.DayFirst());
    const AlarmDate now{parts_.Time.LocalSeconds()};
    for (const Slot slot : slots) {
        parts_.Received.ReadKeptText(channel, channel.Messages.Text(slot), now, parts_.CurrentAlarm);
        if (!file.Write(parts_.CurrentAlarm))
            break;
        work.Advance();
    }
    return file.Finish();
}

/// Returns whether `file` is one of the console's own files, even if its path is written differently.
bool MessageExport::IsOwnFile(const std::filesystem::path& file) const {
    return std::any_of(ownFiles_.begin(), ownFiles_.end(), [&](const std::string& own) {
        std::error_code none;
        return std::filesystem::equivalent(file, folder_ / own, none);
    });
}

}  // namespace tallyhorn
