#pragma once

#include <QTreeView>
#include <vector>

#include "views/forms/ConsolidatedTreeModel.h"
#include "views/forms/RepaintThrottle.h"

namespace tallyhorn {

/// Shows the consolidated tree and keeps ConsolidatedTree informed of the selected node.  Open groups, the
/// current node, its selection and the scroll position survive arrivals and deletions; if the current node is
/// removed, the node that takes its place becomes current, and is selected if the removed one was.
class ConsolidatedTreeView final : public QTreeView {
    Q_OBJECT

public:
    explicit ConsolidatedTreeView(ConsolidatedTree& tree, QWidget* parent = nullptr);

    /// Shows the nodes added since the last call, as often as the throttle allows.
    void ShowNewNodes() { repaint_.Request(); }

    /// Opens all groups above the node, selects the node and scrolls to it.  The node must exist.
    void SelectNode(TreeNode node);
    /// Returns the visible part of the selected node in screen coordinates; empty if there is none.
    QRect CurrentNodeOnScreen() const;

    void reset() override;
    /// Does nothing if a group above the node is closed: the base class would open it.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

signals:
    /// Emitted when the user clicks or presses a key in the tree.
    void Touched();
    /// Emitted when the user presses the Delete key.
    void DeleteRequested();
    /// Emitted when the user double-clicks a leaf or presses Return on it.
    void Opened();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    /// A node on the path from the root to the current node, and its row in its parent.
    struct PathNode {
        TreeNode Node;
        int Row = 0;
    };

    void ShowNewNodesNow();
    void KeepColor();
    void OpenGroups(const QModelIndex& index);
    void RememberState();
    void RestoreCurrent();
    TreeNode NodeToRestore() const;
    void LeaveClosedGroup(const QModelIndex& group);
    bool IsBelow(TreeNode node, TreeNode group) const;
    void RememberOpenGroups(const QModelIndex& parent);

    ConsolidatedTree& tree_;
    TreeNode pressed_;  ///< the node on which a mouse button was pressed last; the root if there is none
    ConsolidatedTreeModel model_;
    RepaintThrottle repaint_{this, [this] { ShowNewNodesNow(); }};
    std::vector<TreeNode> openBeforeReset_;
    std::vector<PathNode> pathBeforeReset_;
    bool selectedBeforeReset_ = false;
    int topBeforeReset_ = 0;
};

}  // namespace tallyhorn
