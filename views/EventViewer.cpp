#include "views/EventViewer.h"

#include <optional>
#include <span>
#include <string_view>

namespace tallyhorn {
namespace {

constexpr const char* ViewerProgram = "eventvwr";
constexpr std::string_view NoMessageText = "Please select a valid message before invoking the Event Viewer!";
constexpr std::string_view OptionText =
    "The name of the message's computer begins with \"-\" or \"/\", so the Event Viewer would take it for an "
    "option.";

/// Returns whether the viewer would read the computer's name as an option.  A sender can write any text
/// there.
bool LooksLikeOption(std::string_view computer) {
    return computer.starts_with('/') || computer.starts_with('-');
}

}  // namespace

void EventViewer::OpenEventViewer(ViewNumber view, MessagePage page) {
    const std::string computer = SelectedComputer(view, page);
    if (computer.empty())
        context_.Boxes.Warn(NoMessageText);
    else if (LooksLikeOption(computer))
        context_.Boxes.Warn(OptionText);
    else
        programs_.Start(ViewerProgram, std::span(&computer, 1));
}

/// Returns the computer of the message selected in `view`, if `view` is a list of `page`, or of the selected
/// node if `page` is the tree's.
std::string EventViewer::SelectedComputer(ViewNumber view, MessagePage page) const {
    if (page == MessagePage::Consolidated)
        return ComputerOfNode();
    return PageOfView(view) == page ? ComputerOfRow(view) : std::string();
}

std::string EventViewer::ComputerOfRow(ViewNumber list) const {
    const std::optional<Slot> slot = context_.Display.SelectedSlot(list);
    if (!slot)
        return {};
    return context_.Received.In(ChannelOfView(list)).Rows.CellText(*slot, MessageColumn::Computer);
}

/// Returns the whole text of the computer's node, including the number of messages.
std::string EventViewer::ComputerOfNode() const {
    TreeNode node = context_.Received.Tree.SelectedNode();
    if (node.IsRoot() || !context_.Received.Tree.Holds(node))
        return {};
    if (node.IsLeaf())
        node = context_.Received.Tree.Parent(node);
    return context_.Received.Tree.Level(node) == TreeLevel::Computer ? context_.Received.Tree.Text(node)
                                                                     : std::string();
}

}  // namespace tallyhorn
