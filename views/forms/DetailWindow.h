#pragma once

#include <QObject>
#include <array>

#include "views/MessageCommands.h"
#include "views/forms/CommandQueue.h"
#include "views/forms/ServerHost.h"
#include "views/messages/MessageContext.h"

class QAbstractItemModel;
class QRect;

namespace tallyhorn {

class ConsolidatedTreeView;
class MessageListView;
class frmMessage;

/// Opens the one detail window for the message selected in a view, and notifies it when the views change.
class DetailWindow final : public QObject {
    Q_OBJECT

public:
    /// The referenced objects must outlive this object.  Lists is indexed by view number.
    struct Parts : MessageContext {
        MessageCommands& Commands;
        CommandQueue& Queue;
        ServerCommands& Others;
        std::array<MessageListView*, ConsolidatedView> Lists;
        ConsolidatedTreeView& Tree;
    };
    DetailWindow(const Parts& parts, QWidget* mainWindow);

    /// Shows the message selected in the tree if `page` is the tree's, otherwise the one selected in `view`.
    /// `view` was the active view and `page` the page in front when the user gave the command.
    void ViewMessageDetails(ViewNumber view, MessagePage page);
    void Close();

private:
    MessageListView& List(ViewNumber view) const { return *parts_.Lists.at(static_cast<std::size_t>(view)); }

    void OpenListMessage(ViewNumber view, MessagePage page);
    void OpenTreeMessage();
    void Show(ViewNumber view, Slot slot, const QRect& entry);
    void Follow(const QAbstractItemModel* model);
    void LookAgain();
    void FollowSelection();
    void SelectEntry(ViewNumber view, Slot slot);

    Parts parts_;
    QWidget* mainWindow_;
    frmMessage* message_ = nullptr;  ///< nullptr if the window is not open
};

}  // namespace tallyhorn
