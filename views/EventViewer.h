#pragma once

#include <string>

#include "platform/MessageBoxes.h"
#include "platform/ProgramLauncher.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// Opens the system's event viewer for the computer of the selected message.  User-interface thread only.
class EventViewer {
public:
    EventViewer(const ReceivedMessages& received, const ServerDisplay& display, MessageBoxes& boxes,
                ProgramLauncher& programs);

    /// Says so where no message with a computer is selected, or one whose computer the viewer would take for
    /// an option; silent where the viewer does not start.
    void OpenEventViewer();

private:
    std::string SelectedComputer() const;
    std::string ComputerOfRow(ViewNumber list) const;
    std::string ComputerOfNode() const;

    const ReceivedMessages& received_;
    const ServerDisplay& display_;
    MessageBoxes& boxes_;
    ProgramLauncher& programs_;
};

}  // namespace tallyhorn
