#include "views/messages/ConsolidatedTree.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>

#include "records/EventTypes.h"

namespace tallyhorn {

/// Identifies a child by its parent and its position there.
struct ConsolidatedTree::ChildPlace {
    GroupId Parent = 0;
    std::size_t Position = 0;

    bool operator==(const ChildPlace&) const = default;
    bool operator<(const ChildPlace& other) const {
        return std::tie(Parent, Position) < std::tie(other.Parent, other.Position);
    }
};

namespace {

constexpr std::size_t AlarmText = 0;
constexpr std::size_t ComputerText = 3;

/// The position of each type in the alphabetical order of the types' names.
constexpr std::array<std::uint64_t, KnownTypeCount> TypeRanks = {2, 4, 0, 1, 3};

}  // namespace

// ---- adding

void ConsolidatedTree::AddMessageToConsolidatedTree(Slot slot, const AlarmRecord& alarm) {
    const MessageRow& row = rows_[slot];
    if (!IsKnown(row.Type))
        leafless_.insert(slot);
    else
        Add({slot, leaves_.AddHead(alarm), FindComputer(row)});
}

void ConsolidatedTree::NoteMessage(Slot slot, const AlarmRecord& alarm) {
    if (!IsKnown(rows_[slot].Type))
        leafless_.insert(slot);
    else
        noted_.push_back({slot, leaves_.AddHead(alarm)});
}

/// Adds the noted leaves in three passes, because groups and their children are far apart in memory: in a
/// short loop the processor loads many of them at a time.
void ConsolidatedTree::AddNoted() {
    for (Noted& message : noted_)
        message.Computer = FindComputer(rows_[message.Message]);
    for (const Noted& message : noted_)
        groups_[message.Computer].Children.PrefetchEnd();
    for (const Noted& message : noted_)
        Add(message);
    noted_.clear();
}

void ConsolidatedTree::Add(const Noted& message) {
    // For most messages, FindComputer has found the group with one lookup; FindOrAddGroups needs three.
    const GroupId group = message.Computer != 0 ? message.Computer : FindOrAddGroups(rows_[message.Message]);
    groups_.ForEachUpwards(group, [](TreeGroup& each) {
        ++each.Count;
        each.Form = each.Count == 1 ? TreeGroup::CountForm::One : TreeGroup::CountForm::Many;
    });
    AddLeaf(group, message.Message, message.Head);
}

/// Returns the group of the row's computer, or 0 if there is none.
GroupId ConsolidatedTree::FindComputer(const MessageRow& row) const {
    return groups_.FindComputer(row.Texts[AlarmText], row.Type, row.Texts[ComputerText]);
}

GroupId ConsolidatedTree::FindOrAddGroups(const MessageRow& row) {
    GroupId group = 0;
    for (const GroupLabel label :
         {row.Texts[AlarmText], static_cast<GroupLabel>(row.Type), row.Texts[ComputerText]}) {
        const GroupId found = groups_.Find(group, label);
        group = found != 0 ? found : AddGroup(group, label, row.Type);
    }
    return group;
}

/// Adds a group without leaves and returns its number.
GroupId ConsolidatedTree::AddGroup(GroupId parent, GroupLabel name, EventType type) {
    TreeGroup group;
    group.Parent = parent;
    group.Name = name;
    group.Type = type;
    group.Level = static_cast<TreeLevel>(static_cast<int>(groups_[parent].Level) + 1);
    if (parent != 0)
        group.KeyNumber = static_cast<std::uint32_t>(nodes_.Rank(groups_[parent].NodeIndex));
    const GroupId id = groups_.Add(std::move(group));
    groups_[id].NodeIndex = nodes_.Add();
    groups_[parent].Children.Insert(GroupEntry(id), RuleBelow(groups_[parent]));
    return id;
}

void ConsolidatedTree::AddLeaf(GroupId computer, Slot slot, TextId head) {
    leaves_.Add(slot, {computer, head, nodes_.Add()});
    TreeGroup& group = groups_[computer];
    const RowEntry entry = leaves_.Entry(slot, group.SortedLeaves);
    if (group.SortedLeaves)
        group.Children.Insert(entry, RuleBelow(group));
    else
        group.Children.Append(entry);
}

// ---- removing

void ConsolidatedTree::RemoveLeaves(std::span<const Slot> slots) {
    const Change change(observer_);
    std::vector<ChildPlace> places;
    std::vector<GroupId> groups;
    for (const Slot slot : slots) {
        if (HasLeaf(slot))
            places.push_back({leaves_[slot].Computer, PositionOf(TreeNode::Leaf(slot))});
        else
            leafless_.erase(slot);
    }
    TakeChildren(std::move(places), [&](GroupId computer, const std::vector<Slot>& gone) {
        ForgetLeaves(computer, gone);
        groups.push_back(computer);
    });
    RemoveEmptyGroups(std::move(groups));
    if (!Holds(selected_))
        selected_ = TreeNode();
    if (nodes_.IsSparse())
        CompactNodes();
}

/// Removes the children in one pass per parent, and calls `taken` with each parent and its removed children.
template <typename Taken>
void ConsolidatedTree::TakeChildren(std::vector<ChildPlace> places, Taken taken) {
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    std::vector<std::size_t> positions;
    for (auto place = places.begin(); place != places.end();) {
        const GroupId parent = place->Parent;
        positions.clear();
        for (; place != places.end() && place->Parent == parent; ++place)
            positions.push_back(place->Position);
        taken(parent, groups_[parent].Children.RemoveAt(positions));
    }
}

void ConsolidatedTree::ForgetLeaves(GroupId computer, const std::vector<Slot>& gone) {
    for (const Slot slot : gone) {
        nodes_.Remove(leaves_[slot].NodeIndex);
        leaves_.Remove(slot);
    }
    groups_.ForEachUpwards(computer, [&gone](TreeGroup& each) {
        each.Count -= static_cast<std::uint32_t>(gone.size());
        each.Form = TreeGroup::CountForm::AfterRemoval;
    });
}

/// Removes empty groups level by level from below, since a group becomes empty when its last child is
/// removed.
void ConsolidatedTree::RemoveEmptyGroups(std::vector<GroupId> candidates) {
    while (!candidates.empty()) {
        std::vector<ChildPlace> places;
        for (const GroupId group : candidates) {
            if (group != 0 && groups_[group].Count == 0)
                places.push_back({groups_[group].Parent, PositionOf(TreeNode::Group(group))});
        }
        candidates.clear();
        TakeChildren(std::move(places), [&](GroupId parent, const std::vector<RowId>& gone) {
            for (const RowId group : gone)
                ForgetGroup(static_cast<GroupId>(group));
            candidates.push_back(parent);
        });
    }
}

void ConsolidatedTree::ForgetGroup(GroupId id) {
    nodes_.Remove(groups_[id].NodeIndex);
    groups_.Remove(id);
}

void ConsolidatedTree::CompactNodes() {
    const RankBitmap::NewIndexes newIndex = nodes_.Compact();
    for (GroupId i = 1; i < groups_.Size(); ++i) {
        if (groups_.Holds(i))
            groups_[i].NodeIndex = newIndex(groups_[i].NodeIndex);
    }
    leaves_.MapNodeIndexes(newIndex);
}

void ConsolidatedTree::Clear() {
    const Change change(observer_);
    groups_.Clear();
    leaves_.Clear();
    leafless_.clear();
    noted_.clear();
    nodes_.Clear();
    selected_ = TreeNode();
}

// ---- looking

bool ConsolidatedTree::Holds(TreeNode node) const {
    if (node.IsLeaf())
        return HasLeaf(node.LeafSlot());
    return groups_.Holds(node.GroupId());
}

TreeLevel ConsolidatedTree::Level(TreeNode node) const {
    return node.IsLeaf() ? TreeLevel::Leaf : groups_[node.GroupId()].Level;
}

TreeNode ConsolidatedTree::Parent(TreeNode node) const {
    return TreeNode::Group(node.IsLeaf() ? leaves_[node.LeafSlot()].Computer
                                         : groups_[node.GroupId()].Parent);
}

std::size_t ConsolidatedTree::ChildCount(TreeNode parent) const {
    return parent.IsLeaf() ? 0 : groups_[parent.GroupId()].Children.Size();
}

TreeNode ConsolidatedTree::ChildAt(TreeNode parent, std::size_t position) const {
    const TreeGroup& group = groups_[parent.GroupId()];
    const std::uint32_t id = group.Children.At(position).Id;
    return group.Level == TreeLevel::Computer ? TreeNode::Leaf(static_cast<Slot>(id)) : TreeNode::Group(id);
}

std::size_t ConsolidatedTree::PositionOf(TreeNode node) const {
    const TreeGroup& parent = groups_[Parent(node).GroupId()];
    const RowEntry entry =
        node.IsLeaf() ? leaves_.Entry(node.LeafSlot(), parent.SortedLeaves) : GroupEntry(node.GroupId());
    return parent.Children.PositionOf(entry, RuleBelow(parent), TieBreakBelow(parent)).value();
}

bool ConsolidatedTree::FindNextAlarmNode(TreeNode& node) const {
    const std::size_t next = PositionOf(node) + 1;
    if (next >= ChildCount(Parent(node)))
        return false;
    node = ChildAt(Parent(node), next);
    return true;
}

bool ConsolidatedTree::FindPreviousAlarmNode(TreeNode& node) const {
    const std::size_t position = PositionOf(node);
    if (position == 0)
        return false;
    node = ChildAt(Parent(node), position - 1);
    return true;
}

TreeNode ConsolidatedTree::FindComputer(std::string_view alarm, EventType type,
                                        std::string_view computer) const {
    const std::optional<TextId> alarmText = rows_.Texts().Find(alarm);
    const std::optional<TextId> computerText = rows_.Texts().Find(computer);
    if (!alarmText || !computerText)
        return {};
    return TreeNode::Group(groups_.FindComputer(*alarmText, type, *computerText));
}

std::string ConsolidatedTree::Text(TreeNode node) const {
    return node.IsLeaf() ? leaves_.Text(node.LeafSlot()) : GroupText(groups_[node.GroupId()], rows_.Texts());
}

std::optional<EventType> ConsolidatedTree::Type(TreeNode node) const {
    if (node.IsLeaf())
        return groups_[leaves_[node.LeafSlot()].Computer].Type;
    const TreeGroup& group = groups_[node.GroupId()];
    if (group.Level == TreeLevel::Alarm)
        return std::nullopt;
    return group.Type;
}

std::string ConsolidatedTree::Key(TreeNode node) const {
    return node.IsLeaf() ? leaves_.Key(node.LeafSlot()) : GroupKey(groups_[node.GroupId()], rows_.Texts());
}

std::size_t ConsolidatedTree::PositionInCollection(TreeNode node) const {
    return nodes_.Rank(node.IsLeaf() ? leaves_[node.LeafSlot()].NodeIndex
                                     : groups_[node.GroupId()].NodeIndex);
}

bool ConsolidatedTree::SortChildren(TreeNode node) {
    if (Level(node) != TreeLevel::Computer || groups_[node.GroupId()].SortedLeaves)
        return false;
    TreeGroup& group = groups_[node.GroupId()];
    group.SortedLeaves = true;
    group.Children.Resort([this](Slot slot) { return leaves_.Entry(slot, true); }, RuleBelow(group),
                          TieBreakBelow(group));
    return true;
}

std::vector<Slot> ConsolidatedTree::SlotsUnder(TreeNode node) const {
    if (node.IsLeaf())
        return {node.LeafSlot()};
    std::vector<Slot> slots;
    AppendLeaves(node.GroupId(), slots);
    const TreeGroup& group = groups_[node.GroupId()];
    if (group.Level == TreeLevel::Alarm)
        std::copy_if(leafless_.begin(), leafless_.end(), std::back_inserter(slots),
                     [&](Slot slot) { return rows_[slot].Texts[AlarmText] == group.Name; });
    return slots;
}

void ConsolidatedTree::AppendLeaves(GroupId id, std::vector<Slot>& slots) const {
    const TreeGroup& group = groups_[id];
    for (const RowEntry& entry : group.Children.Entries()) {
        if (group.Level == TreeLevel::Computer)
            slots.push_back(static_cast<Slot>(entry.Id));
        else
            AppendLeaves(entry.Id, slots);
    }
}

// ---- orders

RowEntry ConsolidatedTree::GroupEntry(GroupId id) const {
    const TreeGroup& group = groups_[id];
    RowEntry entry = RowEntry::Of(static_cast<Slot>(id));
    if (group.Level == TreeLevel::Type) {
        entry.Key = TypeRanks.at(group.Name);
    } else {
        entry.Text = group.Name;
        entry.Key = rows_.Texts().SortPrefix(group.Name);
    }
    return entry;
}

RowOrder::Rule ConsolidatedTree::RuleBelow(const TreeGroup& parent) const {
    RowOrder::Rule rule;
    if (parent.Level == TreeLevel::Root || parent.Level == TreeLevel::Type)
        rule.Texts = &rows_.Texts();
    if (parent.SortedLeaves) {
        rule.Texts = &leaves_.Heads();
        rule.TextFirst = true;
    }
    return rule;
}

RowOrder::TieBreak ConsolidatedTree::TieBreakBelow(const TreeGroup& parent) const {
    if (parent.Level == TreeLevel::Computer)
        return [this](RowId slot) { return rows_[slot].Arrival; };
    return [this](RowId group) -> std::uint64_t { return groups_[static_cast<GroupId>(group)].NodeIndex; };
}

}  // namespace tallyhorn
