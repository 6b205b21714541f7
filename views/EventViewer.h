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

    /// Takes the computer from the message that is selected in `view`, which was the active view when the
    /// user gave the command, or from the tree if that is in front. Shows a message if there is no computer,
    /// or one whose name the viewer would take for an option. Silent if the viewer does not start.
    void OpenEventViewer(ViewNumber view);

private:
    std::string SelectedComputer(ViewNumber view) const;
    std::string ComputerOfRow(ViewNumber list) const;
    std::string ComputerOfNode() const;

    const MessageContext context_;
    ProgramLauncher& programs_;
};

}  // namespace tallyhorn
