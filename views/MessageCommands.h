#pragma once

#include <vector>

#include "views/messages/MessageContext.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

class LongWork;

/// The commands that delete messages: the selected ones or all.  They run pending events, so the caller makes
/// sure that no other command starts meanwhile.
class MessageCommands {
public:
    MessageCommands(const MessageContext& context, const ViewFilterState& viewFilter)
        : context_(context), viewFilter_(viewFilter) {}

    /// Deletes what is selected in `view`, which was the active one when the user gave the command, after a
    /// question. Refused while a view filter is in force; silent if nothing is selected, or if `view` is a
    /// NetBIOS list and the syslog page is in front.
    void DeleteMessages(ViewNumber view);
    /// Deletes what is selected in `view`, whatever page is in front, as DeleteMessages does. Makes `view`
    /// the active one.
    void DeleteMessagesIn(ViewNumber view);
    /// Deletes all messages of the channel of the page in front, after a question.
    void ClearAllMessages();

private:
    bool RefuseWhileFiltered();
    void DeleteNetBiosMessages(ViewNumber view);
    void DeleteSyslogMessages(ViewNumber view);
    void DeleteTreeSelection();
    void RemoveFromSyslog(const std::vector<Slot>& slots, LongWork& work);
    void RemoveFromStore(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work);
    void ShowSyslogViews(bool shown);

    const MessageContext context_;
    const ViewFilterState& viewFilter_;
};

}  // namespace tallyhorn
