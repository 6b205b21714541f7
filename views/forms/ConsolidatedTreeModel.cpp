#include "views/forms/ConsolidatedTreeModel.h"

#include <QCursor>
#include <QGuiApplication>
#include <vector>

#include "ui/AnsiString.h"
#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

QModelIndexList Moved(const ConsolidatedTreeModel& model, const QModelIndexList& from) {
    QModelIndexList to;
    for (const QModelIndex& index : from)
        to << model.IndexOf(ConsolidatedTreeModel::NodeAt(index));
    return to;
}

}  // namespace

ConsolidatedTreeModel::ConsolidatedTreeModel(ConsolidatedTree& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree), icons_(EventIcons()), alarmIcon_(AlarmIcon()) {
    announced_[TreeNode().Number()] = {tree_.ChildCount(TreeNode()), tree_.Count(TreeNode())};
    tree_.SetObserver(this);
}

ConsolidatedTreeModel::~ConsolidatedTreeModel() {
    tree_.SetObserver(nullptr);
}

bool ConsolidatedTreeModel::AnnounceNewNodes() {
    bool inserted = false;
    // The keys are copied, because a view that receives new rows may open a group, which adds to announced_.
    std::vector<std::uint32_t> groups;
    for (const auto& [group, before] : announced_)
        groups.push_back(group);
    for (const std::uint32_t group : groups)
        inserted = Announce(TreeNode::Group(group), announced_[group]) || inserted;
    if (inserted) {
        // The nodes were announced as the last children, but their sorted positions are others.
        emit layoutAboutToBeChanged();
        MovePersistentIndexes();
        emit layoutChanged();
    }
    return inserted;
}

bool ConsolidatedTreeModel::Announce(TreeNode group, Announced& before) {
    const Announced now{tree_.ChildCount(group), tree_.Count(group)};
    const bool inserted = now.Rows > before.Rows;
    if (inserted) {
        beginInsertRows(IndexOf(group), static_cast<int>(before.Rows), static_cast<int>(now.Rows) - 1);
        before.Rows = now.Rows;
        endInsertRows();
    }
    if (now.Rows > 0 && now.Leaves != before.Leaves && tree_.Level(group) != TreeLevel::Computer) {
        const QModelIndex parent = IndexOf(group);
        emit dataChanged(index(0, 0, parent), index(static_cast<int>(now.Rows) - 1, 0, parent),
                         {Qt::DisplayRole});
    }
    before = now;
    return inserted;
}

void ConsolidatedTreeModel::MovePersistentIndexes() {
    const QModelIndexList from = persistentIndexList();
    changePersistentIndexList(from, Moved(*this, from));
}

TreeNode ConsolidatedTreeModel::NodeAt(const QModelIndex& index) {
    return index.isValid() ? TreeNode::FromNumber(static_cast<std::uint32_t>(index.internalId()))
                           : TreeNode();
}

QModelIndex ConsolidatedTreeModel::IndexOf(TreeNode node) const {
    if (node.IsRoot() || !tree_.Holds(node))
        return {};
    return createIndex(static_cast<int>(tree_.PositionOf(node)), 0, static_cast<quintptr>(node.Number()));
}

int ConsolidatedTreeModel::rowCount(const QModelIndex& parent) const {
    const auto announced = announced_.find(NodeAt(parent).Number());
    return announced == announced_.end() ? 0 : static_cast<int>(announced->second.Rows);
}

int ConsolidatedTreeModel::columnCount(const QModelIndex& /*parent*/) const {
    return 1;
}

QModelIndex ConsolidatedTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    const TreeNode child = tree_.ChildAt(NodeAt(parent), static_cast<std::size_t>(row));
    return createIndex(row, column, static_cast<quintptr>(child.Number()));
}

QModelIndex ConsolidatedTreeModel::parent(const QModelIndex& index) const {
    const TreeNode node = NodeAt(index);
    return node.IsRoot() || !tree_.Holds(node) ? QModelIndex() : IndexOf(tree_.Parent(node));
}

bool ConsolidatedTreeModel::hasChildren(const QModelIndex& parent) const {
    const TreeNode node = NodeAt(parent);
    return node.IsRoot() ? rowCount(parent) > 0 : !node.IsLeaf();
}

bool ConsolidatedTreeModel::canFetchMore(const QModelIndex& parent) const {
    const TreeNode node = NodeAt(parent);
    return !node.IsLeaf() && tree_.Holds(node) && !announced_.contains(node.Number());
}

/// Called when the user opens a group: sorts its leaves, which were in order of arrival until then, and
/// announces its children.
void ConsolidatedTreeModel::fetchMore(const QModelIndex& parent) {
    if (!canFetchMore(parent))
        return;
    const TreeNode group = NodeAt(parent);
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    tree_.SortChildren(group);
    QGuiApplication::restoreOverrideCursor();
    Announce(group, announced_[group.Number()]);
}

Qt::ItemFlags ConsolidatedTreeModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemNeverHasChildren, NodeAt(index).IsLeaf());
    return flags;
}

QVariant ConsolidatedTreeModel::data(const QModelIndex& index, int role) const {
    const TreeNode node = NodeAt(index);
    if (node.IsRoot() || !tree_.Holds(node))
        return {};
    const std::optional<EventType> type = tree_.Type(node);
    if (role == Qt::DecorationRole)
        return type ? icons_.at(static_cast<std::size_t>(*type)) : alarmIcon_;
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
        return {};
    const QString shown = ToShownLine(tree_.Text(node));
    switch (role) {
        case Qt::DisplayRole:
            return shown;
        case Qt::ToolTipRole:
            return ToToolTip(shown);
        default:
            return QString((type ? SpokenType(*type) : tr("Alarm")) + QStringLiteral(", ") + shown);
    }
}

/// Announces new nodes before the reset, so that a view that saves its state now gets the current positions
/// of the rows.
void ConsolidatedTreeModel::AboutToChange() {
    AnnounceNewNodes();
    beginResetModel();
}

/// Keeps the groups that still exist announced, so that an open group shows its children right after the
/// reset.  Drops removed groups, because their numbers are reused.
void ConsolidatedTreeModel::Changed() {
    std::erase_if(announced_,
                  [this](const auto& entry) { return !tree_.Holds(TreeNode::Group(entry.first)); });
    for (auto& [group, now] : announced_)
        now = {tree_.ChildCount(TreeNode::Group(group)), tree_.Count(TreeNode::Group(group))};
    endResetModel();
}

}  // namespace tallyhorn
