#pragma once

#include <string_view>
#include <vector>

#include "views/messages/MessageContext.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

class LongWork;

/// The commands that delete messages: the selected ones or all.  They run pending events, so the caller must
/// make sure that no other command starts meanwhile.  While a question is open, messages still arrive;
/// arrivals are held only after the answer Yes.
class MessageCommands {
public:
    MessageCommands(const MessageContext& context, const ViewFilterState& viewFilter)
        : context_(context), viewFilter_(viewFilter) {}

    /// Asks the user, then deletes the messages that were selected in `view` when the question opened. `view`
    /// was the active view and `page` the page in front when the user gave the command. Shows a message box
    /// instead while a view filter is in force. Does nothing if no message is selected, if the preferences
    /// hide the page of `view`, or if `view` is a NetBIOS list and `page` the syslog page. Shows the page of
    /// `view` before it asks.
    void DeleteMessages(ViewNumber view, MessagePage page);
    /// Makes `view` the active view, whatever page is in front, and deletes its selected messages as
    /// DeleteMessages does.
    void DeleteMessagesIn(ViewNumber view);
    /// Asks the user, then deletes all messages of the channel that `page` shows.
    void ClearAllMessages(MessagePage page);

private:
    bool RefuseWhileFiltered();
    bool ConfirmAbout(ViewNumber view, std::string_view question);
    void DeleteNetBiosMessages(ViewNumber view);
    void DeleteSyslogMessages(ViewNumber view);
    void DeleteTreeSelection();
    std::vector<Slot> RemoveSyslogRows(const std::vector<Slot>& slots);
    void RemoveFromSyslog(const std::vector<Slot>& slots, LongWork& work);
    void RemoveFromStore(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work);
    void ShowSyslogViews(bool shown);

    const MessageContext context_;
    const ViewFilterState& viewFilter_;
};

}  // namespace tallyhorn
