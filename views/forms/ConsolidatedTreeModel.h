#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <cstddef>
#include <unordered_map>

#include "views/messages/ConsolidatedTree.h"

namespace tallyhorn {

/// The consolidated tree as Qt's views want it.  A group's children are announced once a view asks for them,
/// and those that come later when TakeInNodes says so, in one batch: what nobody has opened costs nothing.
/// User-interface thread only; the tree outlives the model.
class ConsolidatedTreeModel final : public QAbstractItemModel, private ChangeObserver {
    Q_OBJECT

public:
    explicit ConsolidatedTreeModel(ConsolidatedTree& tree, QObject* parent = nullptr);
    ~ConsolidatedTreeModel() override;

    /// Announces what came since the last time; true where nodes did, not only counts.
    bool TakeInNodes();
    ConsolidatedTree& Tree() { return tree_; }
    const ConsolidatedTree& Tree() const { return tree_; }

    static TreeNode NodeAt(const QModelIndex& index);
    /// Invalid for a node that is gone, and for the root.
    QModelIndex IndexOf(TreeNode node) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    /// What a group's children were when they were announced last.
    struct Announced {
        std::size_t Rows = 0;
        std::size_t Leaves = 0;
    };

    void AboutToChange() override;
    void Changed() override;
    bool Announce(TreeNode group, Announced& before);
    void MovePersistentIndexes();

    ConsolidatedTree& tree_;
    std::array<QIcon, EventPictureCount> icons_;
    QIcon alarmIcon_;
    std::unordered_map<std::uint32_t, Announced> announced_;  ///< by group; the root always
};

}  // namespace tallyhorn
