#include "views/forms/ConsolidatedTreeView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

namespace tallyhorn {

ConsolidatedTreeView::ConsolidatedTreeView(ConsolidatedTree& tree, QWidget* parent)
    : QTreeView(parent), tree_(tree), model_(tree) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setVerticalScrollMode(ScrollPerItem);
    setAutoFillBackground(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    // Before the base class hears of a reset and forgets.
    connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, &ConsolidatedTreeView::RememberState);
    setModel(&model_);
    // After the selection has forgotten.
    connect(&model_, &QAbstractItemModel::modelReset, this, &ConsolidatedTreeView::RestoreCurrent);
}

/// The line at the top stays there, whatever came above it.
void ConsolidatedTreeView::TakeInNow() {
    const QPersistentModelIndex top =
        verticalScrollBar()->value() > 0 ? indexAt(QPoint(1, 1)) : QModelIndex();
    if (model_.TakeInNodes() && top.isValid() && isVisible())
        scrollTo(top, PositionAtTop);
}

/// Qt is told of all on the way down first: it knows no node before.
void ConsolidatedTreeView::SelectNode(TreeNode node) {
    TakeInNow();
    std::vector<TreeNode> way;
    for (TreeNode group = tree_.Parent(node); !group.IsRoot(); group = tree_.Parent(group))
        way.push_back(group);
    for (auto group = way.rbegin(); group != way.rend(); ++group) {
        const QModelIndex index = model_.IndexOf(*group);
        if (model_.canFetchMore(index))
            model_.fetchMore(index);
        expand(index);
    }
    setCurrentIndex(model_.IndexOf(node));
    scrollTo(currentIndex());
}

QRect ConsolidatedTreeView::CurrentNodeOnScreen() const {
    const QRect node = visualRect(currentIndex()) & viewport()->rect();
    return isVisible() && !node.isEmpty() ? QRect(viewport()->mapToGlobal(node.topLeft()), node.size())
                                          : QRect();
}

// ---- through a reset

void ConsolidatedTreeView::RememberState() {
    openBeforeReset_.clear();
    RememberOpenGroups({});
    wayBeforeReset_.clear();
    for (QModelIndex index = currentIndex(); index.isValid(); index = index.parent())
        wayBeforeReset_.push_back({ConsolidatedTreeModel::NodeAt(index), index.row()});
    std::reverse(wayBeforeReset_.begin(), wayBeforeReset_.end());
    topBeforeReset_ = verticalScrollBar()->value();
}

/// Parents before their children.
void ConsolidatedTreeView::RememberOpenGroups(const QModelIndex& parent) {
    const int rows = model_.rowCount(parent);
    for (int row = 0; row < rows; ++row) {
        const QModelIndex child = model_.index(row, 0, parent);
        if (ConsolidatedTreeModel::NodeAt(child).IsLeaf())
            return;
        if (isExpanded(child))
            openBeforeReset_.push_back(ConsolidatedTreeModel::NodeAt(child));
        RememberOpenGroups(child);
    }
}

void ConsolidatedTreeView::reset() {
    QTreeView::reset();
    for (const TreeNode node : openBeforeReset_) {
        if (const QModelIndex index = model_.IndexOf(node); index.isValid())
            setExpanded(index, true);
    }
    openBeforeReset_.clear();
}

/// Where the node is gone, the one after it in the deepest group that is left takes its place, or the last.
void ConsolidatedTreeView::RestoreCurrent() {
    TreeNode node;
    for (const Step& step : wayBeforeReset_) {
        if (tree_.Holds(step.Node)) {
            node = step.Node;
            continue;
        }
        if (const std::size_t rows = tree_.ChildCount(node); rows > 0)
            node = tree_.ChildAt(node, std::min(static_cast<std::size_t>(step.Row), rows - 1));
        break;
    }
    wayBeforeReset_.clear();
    if (!node.IsRoot())
        setCurrentIndex(model_.IndexOf(node));
    else
        tree_.SelectNode(TreeNode());
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(topBeforeReset_);
    if (!node.IsRoot())
        scrollTo(currentIndex());
}

// ---- input

/// Those below the current node, down to the computers: opening a million leaves would take long, and nobody
/// reads them.
void ConsolidatedTreeView::OpenGroups(const QModelIndex& index) {
    const TreeNode node = ConsolidatedTreeModel::NodeAt(index);
    if (node.IsRoot() || node.IsLeaf())
        return;
    // A view that has not been laid out yet would not know the children in time.
    if (model_.canFetchMore(index))
        model_.fetchMore(index);
    expand(index);
    if (tree_.Level(node) == TreeLevel::Computer || tree_.Level(node) == TreeLevel::Type)
        return;
    for (int row = 0; row < model_.rowCount(index); ++row)
        OpenGroups(model_.index(row, 0, index));
}

void ConsolidatedTreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    tree_.SelectNode(ConsolidatedTreeModel::NodeAt(current));
}

/// While it is hidden nobody takes in anything.
void ConsolidatedTreeView::showEvent(QShowEvent* event) {
    QTreeView::showEvent(event);
    TakeInNodes();
}

/// What the user points at is what is there.
void ConsolidatedTreeView::mousePressEvent(QMouseEvent* event) {
    takeIn_.Flush();
    emit Touched();
    QTreeView::mousePressEvent(event);
}

/// The base class opens and closes groups.
void ConsolidatedTreeView::mouseDoubleClickEvent(QMouseEvent* event) {
    takeIn_.Flush();
    emit Touched();
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex pointed = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && pointed == currentIndex() &&
        ConsolidatedTreeModel::NodeAt(pointed).IsLeaf())
        emit Opened();
}

void ConsolidatedTreeView::keyPressEvent(QKeyEvent* event) {
    takeIn_.Flush();
    emit Touched();
    const bool opens = (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
                       ConsolidatedTreeModel::NodeAt(currentIndex()).IsLeaf();
    if (opens) {
        emit Opened();
        return;
    }
    if (event->key() == Qt::Key_Delete) {
        if (!event->isAutoRepeat())
            emit DeleteRequested();
    } else if (event->key() == Qt::Key_Asterisk)
        OpenGroups(currentIndex());
    else
        QTreeView::keyPressEvent(event);
}

}  // namespace tallyhorn
