#pragma once

#include <vector>

#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "platform/TimeSlices.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

class LongWork;

/// The commands that take messages away: delete the selected ones, clear all.  User-interface thread only;
/// while one is at work events may run, and whoever starts commands holds back others until it is done.
class MessageCommands {
public:
    MessageCommands(ReceivedMessages& received, ServerDisplay& display, MessageBoxes& boxes,
                    TimeSlices& slices, Clock& clock, const ViewFilterState& viewFilter);

    /// Acts on the active view, after a question.  Refused while a view filter is in force; silent where
    /// nothing is selected.
    void DeleteMessages();
    /// The same for a view of the caller's choice, whatever page is in front.
    void DeleteMessagesIn(ViewNumber view);
    /// Acts on the channel of the page on show, after a question; any page but the NetBIOS one is syslog's.
    void ClearAllMessages();

private:
    bool RefuseWhileFiltered();
    void DeleteNetBiosMessages();
    void DeleteSyslogMessages();
    void DeleteTreeSelection();
    void RemoveFromSyslog(const std::vector<Slot>& slots, LongWork& work);
    void RemoveFromStore(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work);
    void ShowSyslogViews(bool shown);

    ReceivedMessages& received_;
    ServerDisplay& display_;
    MessageBoxes& boxes_;
    TimeSlices& slices_;
    Clock& clock_;
    const ViewFilterState& viewFilter_;
};

}  // namespace tallyhorn
