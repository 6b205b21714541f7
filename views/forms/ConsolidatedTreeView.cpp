#include "views/forms/ConsolidatedTreeView.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
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
    // Connected before setModel, so that it runs before the base class resets its state.
    connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, &ConsolidatedTreeView::RememberState);
    setModel(&model_);
    // Connected last, so that it runs after the selection model has reset the current node.
    connect(&model_, &QAbstractItemModel::modelReset, this, &ConsolidatedTreeView::RestoreCurrent);
    connect(this, &QTreeView::collapsed, this, &ConsolidatedTreeView::LeaveClosedGroup);
    KeepColor();
}

/// Gives the disabled tree, which is empty, the colour that it has when it is enabled.
void ConsolidatedTreeView::KeepColor() {
    QPalette colors;
    colors.setBrush(QPalette::Disabled, QPalette::Base, palette().brush(QPalette::Active, QPalette::Base));
    viewport()->setPalette(colors);
}

void ConsolidatedTreeView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        KeepColor();
}

/// Keeps the node at the top of the view there if nodes are added above it.
void ConsolidatedTreeView::ShowNewNodesNow() {
    const QPersistentModelIndex top =
        verticalScrollBar()->value() > 0 ? indexAt(QPoint(1, 1)) : QModelIndex();
    if (model_.AnnounceNewNodes() && top.isValid() && isVisible())
        scrollTo(top, PositionAtTop);
}

/// Announces the groups above the node from the top down: an index is valid only if its parent's children are
/// announced.
void ConsolidatedTreeView::SelectNode(TreeNode node) {
    ShowNewNodesNow();
    std::vector<TreeNode> ancestors;
    for (TreeNode group = tree_.Parent(node); !group.IsRoot(); group = tree_.Parent(group))
        ancestors.push_back(group);
    for (auto group = ancestors.rbegin(); group != ancestors.rend(); ++group) {
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

// ---- state across a reset

void ConsolidatedTreeView::RememberState() {
    openBeforeReset_.clear();
    RememberOpenGroups({});
    pathBeforeReset_.clear();
    for (QModelIndex index = currentIndex(); index.isValid(); index = index.parent())
        pathBeforeReset_.push_back({ConsolidatedTreeModel::NodeAt(index), index.row()});
    std::reverse(pathBeforeReset_.begin(), pathBeforeReset_.end());
    selectedBeforeReset_ = selectionModel()->isSelected(currentIndex());
    topBeforeReset_ = verticalScrollBar()->value();
}

/// Adds parents before their children, because reset() must open them in this order.
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

/// Returns the node that was current, or if it was removed, the node that is now at its row in the deepest
/// remaining group above it, or the last one there.
TreeNode ConsolidatedTreeView::NodeToRestore() const {
    TreeNode node;
    for (const PathNode& step : pathBeforeReset_) {
        if (tree_.Holds(step.Node)) {
            node = step.Node;
            continue;
        }
        if (const std::size_t rows = tree_.ChildCount(node); rows > 0)
            node = tree_.ChildAt(node, std::min(static_cast<std::size_t>(step.Row), rows - 1));
        break;
    }
    return node;
}

/// Informs the tree itself, because the selection model emits no signal when a reset ends its selection.
void ConsolidatedTreeView::RestoreCurrent() {
    const TreeNode node = NodeToRestore();
    const bool selects = selectedBeforeReset_ && !node.IsRoot();
    pathBeforeReset_.clear();
    tree_.SelectNode(selects ? node : TreeNode());
    selectionModel()->setCurrentIndex(
        model_.IndexOf(node), selects ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(topBeforeReset_);
    scrollTo(currentIndex());
}

void ConsolidatedTreeView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    for (QModelIndex group = index.parent(); group.isValid(); group = group.parent()) {
        if (!isExpanded(group))
            return;
    }
    QTreeView::scrollTo(index, hint);
}

// ---- selection

void ConsolidatedTreeView::selectionChanged(const QItemSelection& selected,
                                            const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    const QModelIndexList nodes = selectionModel()->selectedIndexes();
    tree_.SelectNode(nodes.isEmpty() ? TreeNode() : ConsolidatedTreeModel::NodeAt(nodes.front()));
}

/// Makes the group current, and selects it, in place of a node below it that was: commands must not act on a
/// node that the user cannot see.
void ConsolidatedTreeView::LeaveClosedGroup(const QModelIndex& group) {
    const TreeNode closed = ConsolidatedTreeModel::NodeAt(group);
    if (IsBelow(tree_.SelectedNode(), closed))
        selectionModel()->setCurrentIndex(group, QItemSelectionModel::ClearAndSelect);
    else if (IsBelow(ConsolidatedTreeModel::NodeAt(currentIndex()), closed))
        selectionModel()->setCurrentIndex(group, QItemSelectionModel::NoUpdate);
}

bool ConsolidatedTreeView::IsBelow(TreeNode node, TreeNode group) const {
    while (!node.IsRoot() && node != group)
        node = tree_.Parent(node);
    return node == group;
}

// ---- input

/// Opens the group and, if it is an alarm, its types.  The computers stay closed, because opening a million
/// leaves takes long.
void ConsolidatedTreeView::OpenGroups(const QModelIndex& index) {
    const TreeNode node = ConsolidatedTreeModel::NodeAt(index);
    if (node.IsRoot() || node.IsLeaf())
        return;
    // Fetch now, because expand() fetches only when the view is next laid out.
    if (model_.canFetchMore(index))
        model_.fetchMore(index);
    expand(index);
    if (tree_.Level(node) == TreeLevel::Computer || tree_.Level(node) == TreeLevel::Type)
        return;
    for (int row = 0; row < model_.rowCount(index); ++row)
        OpenGroups(model_.index(row, 0, index));
}

/// Makes the top node in view current, without selecting it, if none is: the base class would take the first
/// node of the tree, which may be out of view.
void ConsolidatedTreeView::focusInEvent(QFocusEvent* event) {
    if (!currentIndex().isValid())
        selectionModel()->setCurrentIndex(indexAt(QPoint(1, 1)), QItemSelectionModel::NoUpdate);
    QTreeView::focusInEvent(event);
}

/// Shows a tool tip only for a node whose text is cut.
bool ConsolidatedTreeView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const QModelIndex node = indexAt(static_cast<QHelpEvent*>(event)->pos());
        if (!node.isValid() || sizeHintForIndex(node).width() <= visualRect(node).width()) {
            QToolTip::hideText();
            return true;
        }
    }
    return QTreeView::viewportEvent(event);
}

/// Shows the nodes that were added while the tree was hidden.
void ConsolidatedTreeView::showEvent(QShowEvent* event) {
    QTreeView::showEvent(event);
    ShowNewNodes();
}

/// Shows waiting changes first, so that the click acts on the node that the tree has at this place.
void ConsolidatedTreeView::mousePressEvent(QMouseEvent* event) {
    repaint_.Flush();
    emit Touched();
    const QModelIndex pointed = indexAt(event->position().toPoint());
    const TreeNode node = ConsolidatedTreeModel::NodeAt(pointed);
    // The press itself opens or closes a group if it is on the arrow, which is left of the text.
    const bool onText = visualRect(pointed).contains(event->position().toPoint());
    pressed_ = onText || node.IsLeaf() ? node : TreeNode();
    QTreeView::mousePressEvent(event);
}

/// Acts on the node of the first press, although arrivals may have moved another one under the mouse since
/// then.  Emits Opened only for a leaf; the base class opens or closes a group.
void ConsolidatedTreeView::mouseDoubleClickEvent(QMouseEvent* event) {
    repaint_.Flush();
    emit Touched();
    const QModelIndex pointed = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !tree_.Holds(pressed_) || pressed_.IsRoot()) {
        QTreeView::mouseDoubleClickEvent(event);
        return;
    }
    if (ConsolidatedTreeModel::NodeAt(pointed) == pressed_)
        QTreeView::mouseDoubleClickEvent(event);
    else if (const QModelIndex index = model_.IndexOf(pressed_); !pressed_.IsLeaf())
        setExpanded(index, !isExpanded(index));
    if (pressed_.IsLeaf() && tree_.SelectedNode() == pressed_)
        emit Opened();
}

void ConsolidatedTreeView::keyPressEvent(QKeyEvent* event) {
    repaint_.Flush();
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
