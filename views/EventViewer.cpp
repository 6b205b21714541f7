#include "views/EventViewer.h"

#include <optional>
#include <span>
#include <string_view>

namespace tallyhorn {
namespace {

constexpr const char* ViewerProgram = "eventvwr";
constexpr std::string_view NoMessageText = "Please select a valid message before invoking the Event Viewer!";

/// A sender can write anything as the computer's name; an option for the viewer is refused.
bool LooksLikeOption(std::string_view computer) {
    return computer.starts_with('/') || computer.starts_with('-');
}

}  // namespace

EventViewer::EventViewer(const ReceivedMessages& received, const ServerDisplay& display, MessageBoxes& boxes,
                         ProgramLauncher& programs)
    : received_(received), display_(display), boxes_(boxes), programs_(programs) {}

void EventViewer::OpenEventViewer(ViewNumber view) {
    const std::string computer = SelectedComputer(view);
    if (computer.empty() || LooksLikeOption(computer))
        boxes_.Warn(NoMessageText);
    else
        programs_.Start(ViewerProgram, std::span(&computer, 1));
}

/// `view` counts only if it is a list of the page in front.
std::string EventViewer::SelectedComputer(ViewNumber view) const {
    const MessagePage page = display_.CurrentPage();
    if (page == MessagePage::Consolidated)
        return ComputerOfNode();
    return PageOfView(view) == page ? ComputerOfRow(view) : std::string();
}

std::string EventViewer::ComputerOfRow(ViewNumber list) const {
    const std::optional<Slot> slot = display_.SelectedSlot(list);
    if (!slot)
        return {};
    return received_.In(ChannelOfView(list)).Rows.CellText(*slot, MessageColumn::Computer);
}

/// Returns the whole text of the computer's node, including its count.
std::string EventViewer::ComputerOfNode() const {
    TreeNode node = received_.Tree.SelectedNode();
    if (node.IsRoot() || !received_.Tree.Holds(node))
        return {};
    if (node.IsLeaf())
        node = received_.Tree.Parent(node);
    return received_.Tree.Level(node) == TreeLevel::Computer ? received_.Tree.Text(node) : std::string();
}

}  // namespace tallyhorn
