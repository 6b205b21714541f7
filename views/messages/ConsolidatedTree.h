#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "records/AlarmRecord.h"
#include "views/messages/ChangeObserver.h"
#include "views/messages/MessageRows.h"
#include "views/messages/RankBitmap.h"
#include "views/messages/RowOrder.h"
#include "views/messages/TextPool.h"
#include "views/messages/TreeGroups.h"
#include "views/messages/TreeLeaves.h"
#include "views/messages/TreeNode.h"

namespace tallyhorn {

/// Owns the tree of the shown syslog messages: groups by alarm, event type and computer, each with the number
/// of its messages, and a leaf per message.  `rows` must outlive the tree; a leaf must be removed before its
/// row.
class ConsolidatedTree {
public:
    explicit ConsolidatedTree(const MessageRows& rows) : rows_(rows) {}
    ConsolidatedTree(const ConsolidatedTree&) = delete;
    ConsolidatedTree& operator=(const ConsolidatedTree&) = delete;

    /// Sets the only observer, which must outlive the tree unless a call with nullptr removes it.
    void SetObserver(ChangeObserver* observer) { observer_ = observer; }

    /// Adds the leaf of `slot` and the groups that it needs.  The row of `slot` must have been made from
    /// `alarm`.  A message whose event type is none of the five gets no leaf.
    void AddMessageToConsolidatedTree(Slot slot, const AlarmRecord& alarm);
    /// Add many leaves in two steps: NoteMessage for each leaf, then AddNoted, which adds them in the order
    /// in which they were noted.  For 64 leaves at a time this is a fifth faster than
    /// AddMessageToConsolidatedTree, and nearly twice as fast in a tree of a million leaves.  Between the
    /// steps, no other leaf may be added, and no leaf or row removed.
    void NoteMessage(Slot slot, const AlarmRecord& alarm);
    void AddNoted();
    /// Removes the leaf of `slot`, and the groups that no longer count a message.
    void RemoveLeafForSlot(Slot slot) { RemoveLeaves(std::span(&slot, 1)); }
    /// Removes many leaves in one pass over the children of each group concerned.
    void RemoveLeaves(std::span<const Slot> slots);
    void Clear();

    bool IsEmpty() const { return ChildCount(TreeNode()) == 0; }
    std::size_t LeafCount() const { return leaves_.Count(); }
    bool HasLeaf(Slot slot) const { return leaves_.Holds(slot); }
    /// Returns whether the node still exists.
    bool Holds(TreeNode node) const;

    TreeLevel Level(TreeNode node) const;
    TreeNode Parent(TreeNode node) const;
    std::size_t ChildCount(TreeNode parent) const;
    TreeNode ChildAt(TreeNode parent, std::size_t position) const;
    /// Returns the node's position among its parent's children.
    std::size_t PositionOf(TreeNode node) const;
    /// Returns the number of messages that the node counts: 1 for a leaf.
    std::size_t Count(TreeNode node) const { return node.IsLeaf() ? 1 : Count(node.GroupId()); }

    /// Changes `node` to its next sibling; returns false and leaves it unchanged if it is the last.
    bool FindNextAlarmNode(TreeNode& node) const;
    /// Changes `node` to its previous sibling; returns false and leaves it unchanged if it is the first.
    bool FindPreviousAlarmNode(TreeNode& node) const;
    /// Returns the group of `computer` under `type` under `alarm`, or the root if there is none.
    TreeNode FindComputer(std::string_view alarm, EventType type, std::string_view computer) const;

    std::string Text(TreeNode node) const;
    /// Returns nothing for an alarm's group, whose messages may be of different types.
    std::optional<EventType> Type(TreeNode node) const;
    /// Returns "ALARM_name", "EVENT_number_type", "COMPUTER_number_name" or "FIELDS_slot_log".  The number is
    /// the parent's PositionInCollection when the group was made.  The first message, slot 0, makes the nodes
    /// 1 to 4: "ALARM_Disk", "EVENT_0001_error", "COMPUTER_0002_PC" and "FIELDS_0000_System".  If nodes
    /// before a group's parent are removed, the parent's position falls but the group keeps its key.  A later
    /// group that would get the same key gets the next free number instead.
    std::string Key(TreeNode node) const;
    /// Returns the node's position among all existing nodes in the order in which they were made, from 1 on.
    std::size_t PositionInCollection(TreeNode node) const;

    /// Sorts a computer's leaves by their texts, and keeps them sorted; the children of other groups are
    /// always sorted.  Returns false if nothing changed.  Does not call the observer: views sort a group
    /// before they show it.
    bool SortChildren(TreeNode node);

    /// Returns the node that the user selected, or the root if there is none.
    TreeNode SelectedNode() const { return selected_; }
    void SelectNode(TreeNode node) { selected_ = node; }

    /// Returns, in no particular order, the slots of the node's leaves and, for an alarm, of its rows without
    /// a leaf.
    std::vector<Slot> SlotsUnder(TreeNode node) const;

private:
    /// A leaf that AddNoted will add.
    struct Noted {
        Slot Message = 0;
        TextId Head = 0;
        GroupId Computer = 0;  ///< 0 if there is no such group yet
    };

    struct ChildPlace;

    std::size_t Count(GroupId group) const { return groups_[group].Count; }
    GroupId FindComputer(const MessageRow& row) const;
    GroupId FindOrAddGroups(const MessageRow& row);
    void Add(const Noted& message);
    GroupId AddGroup(GroupId parent, GroupLabel name, EventType type);
    void AddLeaf(GroupId computer, Slot slot, TextId head);

    template <typename Taken>
    void TakeChildren(std::vector<ChildPlace> places, Taken taken);
    void ForgetLeaves(GroupId computer, const std::vector<Slot>& gone);
    void RemoveEmptyGroups(std::vector<GroupId> candidates);
    void ForgetGroup(GroupId group);
    void CompactNodes();

    RowEntry GroupEntry(GroupId group) const;
    RowOrder::Rule RuleBelow(const TreeGroup& parent) const;
    RowOrder::TieBreak TieBreakBelow(const TreeGroup& parent) const;

    void AppendLeaves(GroupId group, std::vector<Slot>& slots) const;

    const MessageRows& rows_;
    TreeGroups groups_;
    TreeLeaves leaves_{rows_};
    std::unordered_set<Slot> leafless_;  ///< rows whose event type is none of the five
    std::vector<Noted> noted_;
    RankBitmap nodes_;
    TreeNode selected_;
    ChangeObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
