#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <cstddef>
#include <unordered_map>

#include "views/messages/ConsolidatedTree.h"

namespace tallyhorn {

/// Presents the consolidated tree as a Qt model.  A group's children are announced when a view opens the
/// group, and those added later in one batch when AnnounceNewNodes is called; a closed group costs nothing.
/// The tree must outlive the model.
class ConsolidatedTreeModel final : public QAbstractItemModel, private ChangeObserver {
    Q_OBJECT

public:
    explicit ConsolidatedTreeModel(ConsolidatedTree& tree, QObject* parent = nullptr);
    ~ConsolidatedTreeModel() override;

    /// Announces the nodes and counts that changed since the last call; returns true if nodes were added.
    bool AnnounceNewNodes();
    ConsolidatedTree& Tree() { return tree_; }
    const ConsolidatedTree& Tree() const { return tree_; }

    static TreeNode NodeAt(const QModelIndex& index);
    /// Returns an invalid index for a removed node and for the root.
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
    /// The numbers of a group's children and leaves at the latest announcement.
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
    std::unordered_map<std::uint32_t, Announced> announced_;  ///< by group number; always contains the root
};

}  // namespace tallyhorn
