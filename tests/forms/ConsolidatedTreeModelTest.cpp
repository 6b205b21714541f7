#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <algorithm>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "tests/support/Notifications.h"
#include "views/forms/ConsolidatedTreeModel.h"

namespace tallyhorn {
namespace {

class ConsolidatedTreeModelTest : public ::testing::Test {
protected:
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }

    void AddAny(Slot slot) {
        AlarmRecord record =
            RecordOf({.Name = "a" + std::to_string(Below(3)), .Computer = std::to_string(Below(2))});
        record.DateTime.Seconds += static_cast<std::int64_t>(Below(100'000'000));
        rows_.SetDateStyle({Below(2) == 0, "."});
        rows_.Add(slot, record, EventType::Error);
        tree_.AddMessageToConsolidatedTree(slot, record);
        used_.push_back(slot);
    }
    void RemoveSome() {
        std::shuffle(used_.begin(), used_.end(), random_);
        const std::size_t left = Below(4) == 0 ? 0 : used_.size() - Below(used_.size());
        const std::vector<Slot> removed(used_.begin() + static_cast<std::ptrdiff_t>(left), used_.end());
        used_.resize(left);
        tree_.RemoveLeaves(removed);
        rows_.Remove(removed);
        std::erase_if(opened_, [this](std::uint32_t group) { return !tree_.Holds(TreeNode::Group(group)); });
    }
    void OpenAny() {
        for (QModelIndex index; model_.rowCount(index) > 0;) {
            index = model_.index(static_cast<int>(Below(static_cast<std::size_t>(model_.rowCount(index)))), 0,
                                 index);
            if (!model_.canFetchMore(index))
                continue;
            model_.fetchMore(index);
            opened_.insert(ConsolidatedTreeModel::NodeAt(index).Number());
            return;
        }
    }
    /// Checks that the model has the children of each opened group, in the tree's order, and no others.
    void Compare(const QModelIndex& parent) {
        const TreeNode group = ConsolidatedTreeModel::NodeAt(parent);
        const bool opened = group.IsRoot() || opened_.contains(group.Number());
        ASSERT_EQ(model_.canFetchMore(parent), !opened);
        ASSERT_EQ(model_.rowCount(parent), opened ? static_cast<int>(tree_.ChildCount(group)) : 0);
        QString before;
        for (int row = 0; row < model_.rowCount(parent); ++row) {
            const QModelIndex child = model_.index(row, 0, parent);
            ASSERT_GE(child.data().toString(), before);
            before = child.data().toString();
            if (model_.hasChildren(child)) {
                ASSERT_NO_FATAL_FAILURE(Compare(child));
            }
        }
    }

    MessageRows rows_;
    ConsolidatedTree tree_{rows_};
    ConsolidatedTreeModel model_{tree_};
    std::mt19937 random_{1};
    std::vector<Slot> used_;
    std::set<std::uint32_t> opened_;  ///< numbers of opened groups; removed groups' numbers are reused
};

TEST_F(ConsolidatedTreeModelTest, HasTheChildrenOfOpenedGroupsThroughRandomSteps) {
    QAbstractItemModelTester tester(&model_, QAbstractItemModelTester::FailureReportingMode::Fatal);
    // Without this, the tester calls fetchMore from inside the signals that it checks.
    tester.setUseFetchMore(false);
    for (Slot step = 0; step < 1500; ++step) {
        SCOPED_TRACE(step);
        const std::size_t what = Below(10);
        if (what < 5 || used_.empty())
            AddAny(step);
        else if (what < 8)
            OpenAny();
        else if (what == 8)
            RemoveSome();
        std::vector<std::pair<TreeNode, QPersistentModelIndex>> kept;
        for (const Slot slot : used_) {
            const QModelIndex leaf = model_.IndexOf(TreeNode::Leaf(slot));
            if (leaf.row() < model_.rowCount(model_.parent(leaf)))
                kept.emplace_back(TreeNode::Leaf(slot), leaf);
        }
        model_.AnnounceNewNodes();
        for (const auto& [leaf, index] : kept)
            ASSERT_EQ(QModelIndex(index), model_.IndexOf(leaf));
        ASSERT_NO_FATAL_FAILURE(Compare({}));
    }
}

}  // namespace
}  // namespace tallyhorn
