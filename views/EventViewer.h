#pragma once

#include <string>

#include "platform/ProgramLauncher.h"
#include "views/messages/MessageContext.h"

namespace tallyhorn {

/// Opens the system's event viewer for the computer of the selected message.
class EventViewer {
public:
    EventViewer(const MessageContext& context, ProgramLauncher& programs)
        : context_(context), programs_(programs) {}

    /// Opens the viewer for the computer of the message selected in `view`, or of the node selected in the
    /// tree if `page` is the tree's. `view` was the active view and `page` the page in front when the user
    /// gave the command. Shows a message box if there is no computer, and another one if the viewer would
    /// read the computer's name as an option, but none if the viewer does not start.
    void OpenEventViewer(ViewNumber view, MessagePage page);

private:
    std::string SelectedComputer(ViewNumber view, MessagePage page) const;
    std::string ComputerOfRow(ViewNumber list) const;
    std::string ComputerOfNode() const;

    const MessageContext context_;
    ProgramLauncher& programs_;
};

}  // namespace tallyhorn
