#include "views/forms/DetailWindow.h"

#include <optional>

#include "views/forms/ConsolidatedTreeView.h"
#include "views/forms/MessageListView.h"
#include "views/forms/frmMessage.h"

namespace tallyhorn {

DetailWindow::DetailWindow(const Parts& parts, QWidget* mainWindow)
    : QObject(mainWindow), parts_(parts), mainWindow_(mainWindow) {
    for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
        connect(&List(view), &MessageListView::Opened, this, [this, view] {
            const MessagePage page = parts_.Display.CurrentPage();
            parts_.Queue.Run([this, view, page] { OpenListMessage(view, page); });
        });
        Follow(List(view).model());
        // Queued, because both signals are emitted before the list changes its selection.
        for (const auto signal : {&MessageListView::Touched, &MessageListView::MouseReleased})
            connect(&List(view), signal, this, &DetailWindow::FollowSelection, Qt::QueuedConnection);
    }
    connect(&parts_.Tree, &ConsolidatedTreeView::Opened, this,
            [this] { parts_.Queue.Run([this] { OpenTreeMessage(); }); });
    Follow(parts_.Tree.model());
    connect(&parts_.Queue, &CommandQueue::WorkDone, this, &DetailWindow::LookAgain);
}

void DetailWindow::ViewMessageDetails(ViewNumber view, MessagePage page) {
    if (page == MessagePage::Consolidated)
        OpenTreeMessage();
    else if (view != ConsolidatedView)
        OpenListMessage(view, page);
}

/// compatibility: if `page` is the syslog page, a NetBIOS list is replaced by the syslog list of the same
/// event types.
void DetailWindow::OpenListMessage(ViewNumber view, MessagePage page) {
    if (page == MessagePage::Syslog)
        view = ViewOfList(Channel::Syslog, ListOfView(view));
    parts_.Received.SetActiveView(view);
    if (const std::optional<Slot> slot = List(view).SelectedSlot())
        Show(view, *slot, List(view).CurrentRowOnScreen());
}

void DetailWindow::OpenTreeMessage() {
    parts_.Received.SetActiveView(ConsolidatedView);
    const TreeNode node = parts_.Received.Tree.SelectedNode();
    if (node.IsLeaf())
        Show(ConsolidatedView, node.LeafSlot(), parts_.Tree.CurrentNodeOnScreen());
}

void DetailWindow::Show(ViewNumber view, Slot slot, const QRect& entry) {
    if (message_ == nullptr) {
        message_ =
            new frmMessage({parts_, parts_.Queue, [this](ViewNumber in, Slot of) { SelectEntry(in, of); },
                            [this](ViewNumber in) { parts_.Commands.DeleteMessagesIn(in); },
                            [this](QWidget& over) { parts_.Others.AddSuppressionFilter(over); }},
                           mainWindow_);
        connect(message_, &frmMessage::Closed, this, [this] { message_ = nullptr; });
    }
    message_->InitForm(view, slot);
    message_->ShowBeside(entry);
}

void DetailWindow::Close() {
    if (message_ != nullptr)
        message_->Close();
}

void DetailWindow::Follow(const QAbstractItemModel* model) {
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        if (message_ != nullptr)
            message_->NotePlace();
    });
    connect(model, &QAbstractItemModel::modelReset, this, &DetailWindow::LookAgain);
}

/// Does nothing while work is running, because store, rows and lists may then be inconsistent.  It is called
/// again on WorkDone.
void DetailWindow::LookAgain() {
    if (!parts_.Queue.IsAtWork() && message_ != nullptr)
        message_->LookAgain();
}

void DetailWindow::FollowSelection() {
    if (!parts_.Queue.IsAtWork() && message_ != nullptr)
        message_->UpdateNavigation();
}

void DetailWindow::SelectEntry(ViewNumber view, Slot slot) {
    if (view == ConsolidatedView)
        parts_.Tree.SelectNode(TreeNode::Leaf(slot));
    else if (const std::optional<std::size_t> position = parts_.Received.List(view).PositionOf(slot))
        List(view).SelectRow(*position);
}

}  // namespace tallyhorn
