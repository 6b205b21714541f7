#pragma once

#include <QObject>
#include <array>

#include "views/MessageCommands.h"
#include "views/forms/CommandQueue.h"
#include "views/forms/ServerHost.h"
#include "views/messages/MessageContext.h"

class QAbstractItemModel;
class QRect;
class QTabWidget;

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
        QTabWidget& Pages;
        std::array<MessageListView*, ConsolidatedView> Lists;
        ConsolidatedTreeView& Tree;
    };
    DetailWindow(const Parts& parts, QWidget* mainWindow);

    /// Shows the message selected in the tree if the tree is in front, otherwise the one selected in `view`,
    /// which was the active view when the user gave the command.
    void ViewMessageDetails(ViewNumber view);
    void Close();

private:
    MessagePage CurrentPage() const;
    MessageListView& List(ViewNumber view) const { return *parts_.Lists.at(static_cast<std::size_t>(view)); }

    void OpenListMessage(ViewNumber view);
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
