#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "records/AlarmRecord.h"
#include "views/messages/ChangeObserver.h"
#include "views/messages/ChunkedArray.h"
#include "views/messages/LivingOrder.h"
#include "views/messages/MessageRows.h"
#include "views/messages/RowOrder.h"
#include "views/messages/TextPool.h"
#include "views/messages/TreeGroups.h"
#include "views/messages/TreeNode.h"

namespace tallyhorn {

/// The syslog notifications grouped by alarm, type of event and computer, with a leaf for each and the number
/// of leaves at each group.  User-interface thread only; `rows` outlives the tree, and a row goes after its
/// leaf.
class ConsolidatedTree {
public:
    explicit ConsolidatedTree(const MessageRows& rows) : rows_(rows) {}
    ConsolidatedTree(const ConsolidatedTree&) = delete;
    ConsolidatedTree& operator=(const ConsolidatedTree&) = delete;

    /// At most one; it outlives the tree or is taken away with nullptr.
    void SetObserver(ChangeObserver* observer) { observer_ = observer; }

    /// Adds the leaf of `slot`, whose row was made just before from the same record.  A type of event that is
    /// none of the five stays out of the tree.  Where a group would have to be made whose key another group
    /// has, neither it nor what belongs below it is made; the groups above count the notification all the
    /// same, until its row goes.
    void AddMessageToConsolidatedTree(Slot slot, const AlarmRecord& alarm);
    /// The same for many, which costs less than one by one: each is noted, and AddNoted adds them in that
    /// order.  Their rows stay meanwhile, and nothing else is added or removed.
    void NoteMessage(Slot slot, const AlarmRecord& alarm);
    void AddNoted();
    /// Takes the notification of `slot` out, and the groups that then count nothing.
    void RemoveLeafForSlot(Slot slot) { RemoveLeaves(std::span(&slot, 1)); }
    /// The same for many, which costs less than one by one.
    void RemoveLeaves(std::span<const Slot> slots);
    void Clear();

    bool IsEmpty() const { return ChildCount(TreeNode()) == 0; }
    std::size_t LeafCount() const { return Count(0) - countedLeafless_; }
    bool HasLeaf(Slot slot) const;
    /// Whether the node is still there.
    bool Holds(TreeNode node) const;

    TreeLevel Level(TreeNode node) const;
    TreeNode Parent(TreeNode node) const;
    std::size_t ChildCount(TreeNode parent) const;
    TreeNode ChildAt(TreeNode parent, std::size_t position) const;
    /// Among its parent's children.
    std::size_t PositionOf(TreeNode node) const;
    /// The notifications at the node or below it.
    std::size_t Count(TreeNode node) const { return node.IsLeaf() ? 1 : Count(node.GroupId()); }

    /// Moves `node` to its next sibling; false, and `node` stays, for a last one.
    bool FindNextAlarmNode(TreeNode& node) const;
    /// The same to the sibling before, which a first one has not.
    bool FindPreviousAlarmNode(TreeNode& node) const;
    /// The computer's group by the texts of its rows; the root where there is none.
    TreeNode FindComputer(std::string_view alarm, EventType type, std::string_view computer) const;

    std::string Text(TreeNode node) const;
    /// Nothing for an alarm, whose notifications may be of different types.
    std::optional<EventType> Type(TreeNode node) const;
    /// "ALARM_name", "EVENT_number_type", "COMPUTER_number_name" or "FIELDS_slot_log": the number is the
    /// position among all nodes that the parent had when the group was made.
    std::string Key(TreeNode node) const;
    /// Counts from 1 in the order in which the nodes were made.
    std::size_t PositionInCollection(TreeNode node) const;

    /// The node's children stand in the order of their texts from now on, as those of alarms and types always
    /// do.  False where they did so already.  The observer is not told: whoever shows a group's leaves has
    /// them sorted first.
    bool SortChildren(TreeNode node);

    /// The one that the user has chosen; the root where there is none.
    TreeNode SelectedNode() const { return selected_; }
    void SelectNode(TreeNode node) { selected_ = node; }

    /// The slots of all rows that the node covers, in no order: its leaves, and rows of the same alarm that
    /// have no leaf.
    std::vector<Slot> SlotsUnder(TreeNode node) const;

private:
    /// The computer that a leaf hangs under, 0 where the slot has no leaf.
    struct Leaf {
        GroupId Computer = 0;
        TextId Head = 0;
        LivingOrder::Number Number = 0;
    };

    /// What a leaf is to be made of.
    struct Noted {
        Slot Message = 0;
        TextId Head = 0;
        GroupId Computer = 0;  ///< 0 where it is not known
    };

    struct ChildPlace {
        GroupId Parent = 0;
        std::size_t Position = 0;

        bool operator==(const ChildPlace&) const = default;
        bool operator<(const ChildPlace& other) const {
            return Parent != other.Parent ? Parent < other.Parent : Position < other.Position;
        }
    };
    std::size_t Count(GroupId group) const { return groups_[group].Count; }
    const Leaf& LeafOf(TreeNode node) const { return leaves_[static_cast<std::size_t>(node.LeafSlot())]; }
    GroupId FindComputer(const MessageRow& row) const;
    GroupId FindOrAddGroups(const MessageRow& row);
    void Add(const Noted& message);
    GroupId AddGroup(GroupId parent, GroupLabel name, EventType type);
    void AddLeaf(GroupId computer, Slot slot, TextId head);
    TextId AddHead(const AlarmRecord& alarm);

    template <typename Taken>
    void TakeChildren(std::vector<ChildPlace> places, Taken taken);
    void ForgetLeaves(GroupId computer, const std::vector<Slot>& gone);
    GroupId ForgetLeafless(Slot slot);
    void Discount(GroupId group, std::size_t gone);
    void RemoveEmptyGroups(std::vector<GroupId> candidates);
    void ForgetGroup(GroupId group);
    void Renumber();

    RowEntry GroupEntry(GroupId group) const;
    RowEntry LeafEntry(Slot slot, bool sorted) const;
    RowOrder::Rule RuleBelow(const TreeGroup& parent) const;
    RowOrder::Arrivals ArrivalsBelow(const TreeGroup& parent) const;

    std::string_view GroupName(const TreeGroup& group) const;
    std::string LeafDate(Slot slot) const;
    void AppendLeaves(GroupId group, std::vector<Slot>& slots) const;
    bool Covers(const TreeGroup& group, Slot slot) const;

    const MessageRows& rows_;
    TreeGroups groups_;
    ChunkedArray<Leaf> leaves_;  ///< by slot
    /// Rows that were given no leaf, with the last group that counts them, 0 for none.
    std::unordered_map<Slot, GroupId> leafless_;
    std::size_t countedLeafless_ = 0;
    TextPool heads_;  ///< leaf texts up to their dates
    std::string headBuffer_;
    std::vector<Noted> noted_;
    LivingOrder order_;
    TreeNode selected_;
    ChangeObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
