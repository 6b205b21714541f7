#pragma once

#include <QTreeView>
#include <vector>

#include "views/forms/ConsolidatedTreeModel.h"
#include "views/forms/Pacer.h"

namespace tallyhorn {

/// Shows the consolidated tree.  What the user has opened, chosen and scrolled to stays so through arrivals
/// and deletions; where the chosen node goes, the one that takes its place is chosen.  User-interface thread
/// only.
class ConsolidatedTreeView final : public QTreeView {
    Q_OBJECT

public:
    explicit ConsolidatedTreeView(ConsolidatedTree& tree, QWidget* parent = nullptr);

    /// Shows what came since the last time, at once or very soon.
    void TakeInNodes() { takeIn_.Request(); }

    /// Makes the node the current and the only selected one, with all groups above it open, and scrolls it
    /// into view.  The tree holds the node.
    void SelectNode(TreeNode node);
    /// Where the current node stands on the screen; empty where it is out of sight.
    QRect CurrentNodeOnScreen() const;

    void reset() override;

signals:
    /// The user has clicked or pressed a key in the tree.
    void Touched();
    /// The Delete key.
    void DeleteRequested();
    /// A double click on a leaf, or the Return key on it.
    void Opened();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    /// A node on the way from the root to the current one.
    struct Step {
        TreeNode Node;
        int Row = 0;
    };

    void TakeInNow();
    void OpenGroups(const QModelIndex& index);
    void RememberState();
    void RestoreCurrent();
    void RememberOpenGroups(const QModelIndex& parent);

    ConsolidatedTree& tree_;
    ConsolidatedTreeModel model_;
    Pacer takeIn_{this, [this] { TakeInNow(); }};
    std::vector<TreeNode> openBeforeReset_;
    std::vector<Step> wayBeforeReset_;
    int topBeforeReset_ = 0;
};

}  // namespace tallyhorn
