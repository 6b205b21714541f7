#include "views/messages/ConsolidatedTree.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "records/AnsiText.h"
#include "records/DateDisplay.h"
#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

constexpr std::size_t AlarmText = 0;
constexpr std::size_t LogTypeText = 1;
constexpr std::size_t ComputerText = 3;

/// Where each event type stands in the alphabetical order of the types' names.
constexpr std::array<std::uint64_t, KnownTypeCount> TypeRanks = {2, 4, 0, 1, 3};

std::string FourDigits(std::uint32_t number) {
    std::array<char, 16> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04u", number);
    return {text.data(), static_cast<std::size_t>(length)};
}

/// What is left of a group's text when its count is cut off at the first "(", which may be the name's own.
std::string_view BeforeCount(std::string_view name) {
    const std::size_t open = name.find('(');
    if (open == std::string_view::npos)
        return name;
    name = name.substr(0, open);
    if (name.ends_with(' '))
        name.remove_suffix(1);
    return name;
}

}  // namespace

// ---- adding

void ConsolidatedTree::AddMessageToConsolidatedTree(Slot slot, const AlarmRecord& alarm) {
    const MessageRow& row = rows_[slot];
    if (!IsKnown(row.Type))
        leafless_.emplace(slot, 0);
    else
        Add({slot, AddHead(alarm), FindComputer(row)});
}

void ConsolidatedTree::NoteMessage(Slot slot, const AlarmRecord& alarm) {
    if (!IsKnown(rows_[slot].Type))
        leafless_.emplace(slot, 0);
    else
        noted_.push_back({slot, AddHead(alarm)});
}

/// Groups and their children lie far apart in memory: the processor fetches many of them at a time where no
/// other work comes between.
void ConsolidatedTree::AddNoted() {
    for (Noted& message : noted_)
        message.Computer = FindComputer(rows_[message.Message]);
    for (const Noted& message : noted_)
        groups_[message.Computer].Children.FetchEnd();
    for (const Noted& message : noted_)
        Add(message);
    noted_.clear();
}

void ConsolidatedTree::Add(const Noted& message) {
    // Most have their groups already, and one look is cheaper than three.
    const GroupId group = message.Computer != 0 ? message.Computer : FindOrAddGroups(rows_[message.Message]);
    groups_.ForEachUpwards(group, [](TreeGroup& each) {
        ++each.Count;
        each.Form = each.Count == 1 ? TreeGroup::CountForm::One : TreeGroup::CountForm::Many;
    });
    if (groups_[group].Level == TreeLevel::Computer) {
        AddLeaf(group, message.Message, message.Head);
    } else {
        heads_.Release(message.Head);
        leafless_.emplace(message.Message, group);
        ++countedLeafless_;
    }
}

/// 0 where there is none.
GroupId ConsolidatedTree::FindComputer(const MessageRow& row) const {
    return groups_.FindComputer(row.Texts[AlarmText], row.Type, row.Texts[ComputerText]);
}

/// The computer, or the last group above it whose next one would have to be made with a key that is taken.
GroupId ConsolidatedTree::FindOrAddGroups(const MessageRow& row) {
    GroupId group = 0;
    for (const GroupLabel label :
         {row.Texts[AlarmText], static_cast<GroupLabel>(row.Type), row.Texts[ComputerText]}) {
        const GroupId found = groups_.Find(group, label);
        const GroupId below = found != 0 ? found : AddGroup(group, label, row.Type);
        if (below == 0)
            return group;
        group = below;
    }
    return group;
}

/// 0 where another group has the key.
GroupId ConsolidatedTree::AddGroup(GroupId parent, GroupLabel name, EventType type) {
    TreeGroup group;
    group.Parent = parent;
    group.Name = name;
    group.Type = type;
    group.Level = static_cast<TreeLevel>(static_cast<int>(groups_[parent].Level) + 1);
    if (parent != 0)
        group.KeyNumber = static_cast<std::uint32_t>(order_.PositionOf(groups_[parent].Number));
    const GroupId id = groups_.Add(std::move(group));
    if (id == 0)
        return 0;
    groups_[id].Number = order_.Add();
    groups_[parent].Children.Insert(GroupEntry(id), RuleBelow(groups_[parent]));
    return id;
}

void ConsolidatedTree::AddLeaf(GroupId computer, Slot slot, TextId head) {
    leaves_.GrowTo(static_cast<std::size_t>(slot) + 1);
    leaves_[static_cast<std::size_t>(slot)] = {computer, head, order_.Add()};
    TreeGroup& group = groups_[computer];
    if (group.SortedLeaves)
        group.Children.Insert(LeafEntry(slot, true), RuleBelow(group));
    else
        group.Children.Append(LeafEntry(slot, false));
}

TextId ConsolidatedTree::AddHead(const AlarmRecord& alarm) {
    const std::string id = std::to_string(alarm.EventID);
    headBuffer_.assign(alarm.LogType).append(" Log  ||  ");
    if (CompareNoCase(alarm.LogType, "security") == 0)
        headBuffer_.append("Event ID: ").append(id).append("  ||  User: ").append(alarm.AccountName);
    else
        headBuffer_.append("Source: ").append(alarm.Source).append("  ||  Event ID: ").append(id);
    headBuffer_.append("  ||  Date Logged: ");
    return heads_.Add(headBuffer_);
}

// ---- removing

void ConsolidatedTree::RemoveLeaves(std::span<const Slot> slots) {
    const Change change(observer_);
    std::vector<ChildPlace> places;
    std::vector<GroupId> groups;
    for (const Slot slot : slots) {
        if (HasLeaf(slot))
            places.push_back({LeafOf(TreeNode::Leaf(slot)).Computer, PositionOf(TreeNode::Leaf(slot))});
        else if (const GroupId group = ForgetLeafless(slot); group != 0)
            groups.push_back(group);
    }
    TakeChildren(std::move(places), [&](GroupId computer, const std::vector<Slot>& gone) {
        ForgetLeaves(computer, gone);
        groups.push_back(computer);
    });
    RemoveEmptyGroups(std::move(groups));
    if (!Holds(selected_))
        selected_ = TreeNode();
    if (order_.WantsRenumbering())
        Renumber();
}

/// Goes once through the children of each group concerned, and tells what it has taken from it.
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
        Leaf& leaf = leaves_[static_cast<std::size_t>(slot)];
        order_.Remove(leaf.Number);
        heads_.Release(leaf.Head);
        leaf = Leaf();
    }
    Discount(computer, gone.size());
}

/// Gives the group that counted it, 0 where none did.
GroupId ConsolidatedTree::ForgetLeafless(Slot slot) {
    const auto found = leafless_.find(slot);
    if (found == leafless_.end())
        return 0;
    const GroupId group = found->second;
    leafless_.erase(found);
    if (group != 0) {
        --countedLeafless_;
        Discount(group, 1);
    }
    return group;
}

void ConsolidatedTree::Discount(GroupId group, std::size_t gone) {
    groups_.ForEachUpwards(group, [gone](TreeGroup& each) {
        each.Count -= static_cast<std::uint32_t>(gone);
        each.Form = TreeGroup::CountForm::AfterRemoval;
    });
}

/// Goes up a level at a time, since a group is empty once all below it are gone.
void ConsolidatedTree::RemoveEmptyGroups(std::vector<GroupId> candidates) {
    while (!candidates.empty()) {
        std::vector<ChildPlace> places;
        for (const GroupId group : candidates) {
            // One that still has empty groups below it is come to again from there.
            if (group != 0 && groups_[group].Count == 0 && groups_[group].Children.Size() == 0)
                places.push_back({groups_[group].Parent, PositionOf(TreeNode::Group(group))});
        }
        candidates.clear();
        TakeChildren(std::move(places), [&](GroupId parent, const std::vector<Slot>& gone) {
            for (const Slot group : gone)
                ForgetGroup(static_cast<GroupId>(group));
            candidates.push_back(parent);
        });
    }
}

void ConsolidatedTree::ForgetGroup(GroupId id) {
    order_.Remove(groups_[id].Number);
    groups_.Remove(id);
}

void ConsolidatedTree::Renumber() {
    const LivingOrder::NewNumbers newNumber = order_.Renumber();
    for (GroupId i = 1; i < groups_.Size(); ++i) {
        if (groups_.Holds(i))
            groups_[i].Number = newNumber(groups_[i].Number);
    }
    for (std::size_t slot = 0; slot < leaves_.Size(); ++slot) {
        if (leaves_[slot].Computer != 0)
            leaves_[slot].Number = newNumber(leaves_[slot].Number);
    }
}

void ConsolidatedTree::Clear() {
    const Change change(observer_);
    groups_.Clear();
    leaves_.Clear();
    leafless_.clear();
    countedLeafless_ = 0;
    noted_.clear();
    heads_ = TextPool();
    order_.Clear();
    selected_ = TreeNode();
}

// ---- looking

bool ConsolidatedTree::HasLeaf(Slot slot) const {
    return slot >= 0 && static_cast<std::size_t>(slot) < leaves_.Size() &&
           leaves_[static_cast<std::size_t>(slot)].Computer != 0;
}

bool ConsolidatedTree::Holds(TreeNode node) const {
    if (node.IsLeaf())
        return HasLeaf(node.LeafSlot());
    return groups_.Holds(node.GroupId());
}

TreeLevel ConsolidatedTree::Level(TreeNode node) const {
    return node.IsLeaf() ? TreeLevel::Leaf : groups_[node.GroupId()].Level;
}

TreeNode ConsolidatedTree::Parent(TreeNode node) const {
    return TreeNode::Group(node.IsLeaf() ? LeafOf(node).Computer : groups_[node.GroupId()].Parent);
}

std::size_t ConsolidatedTree::ChildCount(TreeNode parent) const {
    return parent.IsLeaf() ? 0 : groups_[parent.GroupId()].Children.Size();
}

TreeNode ConsolidatedTree::ChildAt(TreeNode parent, std::size_t position) const {
    const TreeGroup& group = groups_[parent.GroupId()];
    const std::uint32_t number = group.Children.At(position).Slot;
    return group.Level == TreeLevel::Computer ? TreeNode::Leaf(static_cast<Slot>(number))
                                              : TreeNode::Group(number);
}

std::size_t ConsolidatedTree::PositionOf(TreeNode node) const {
    const TreeGroup& parent = groups_[Parent(node).GroupId()];
    const RowEntry entry =
        node.IsLeaf() ? LeafEntry(node.LeafSlot(), parent.SortedLeaves) : GroupEntry(node.GroupId());
    return parent.Children.PositionOf(entry, RuleBelow(parent), ArrivalsBelow(parent)).value();
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
    if (node.IsLeaf())
        return std::string(heads_.Text(LeafOf(node).Head)) + LeafDate(node.LeafSlot());
    const TreeGroup& group = groups_[node.GroupId()];
    const std::string_view name = GroupName(group);
    std::string text(group.Form == TreeGroup::CountForm::AfterRemoval ? BeforeCount(name) : name);
    if (group.Form == TreeGroup::CountForm::One)
        return text.append(" ( 1 Event )");
    return text.append(" ( ").append(std::to_string(group.Count)).append(" Events )");
}

std::optional<EventType> ConsolidatedTree::Type(TreeNode node) const {
    if (node.IsLeaf())
        return groups_[LeafOf(node).Computer].Type;
    const TreeGroup& group = groups_[node.GroupId()];
    if (group.Level == TreeLevel::Alarm)
        return std::nullopt;
    return group.Type;
}

std::string ConsolidatedTree::Key(TreeNode node) const {
    if (node.IsLeaf()) {
        return "FIELDS_" + FourDigits(static_cast<std::uint32_t>(node.LeafSlot())) + "_" +
               std::string(rows_.Texts().Text(rows_[node.LeafSlot()].Texts[LogTypeText]));
    }
    const TreeGroup& group = groups_[node.GroupId()];
    switch (group.Level) {
        case TreeLevel::Alarm:
            return "ALARM_" + std::string(GroupName(group));
        case TreeLevel::Type:
            return "EVENT_" + FourDigits(group.KeyNumber) + "_" + std::string(EventTypeKey(group.Type));
        default:
            return "COMPUTER_" + FourDigits(group.KeyNumber) + "_" + std::string(GroupName(group));
    }
}

std::size_t ConsolidatedTree::PositionInCollection(TreeNode node) const {
    return order_.PositionOf(node.IsLeaf() ? LeafOf(node).Number : groups_[node.GroupId()].Number);
}

bool ConsolidatedTree::SortChildren(TreeNode node) {
    if (Level(node) != TreeLevel::Computer || groups_[node.GroupId()].SortedLeaves)
        return false;
    TreeGroup& group = groups_[node.GroupId()];
    group.SortedLeaves = true;
    group.Children.Resort([this](Slot slot) { return LeafEntry(slot, true); }, RuleBelow(group),
                          ArrivalsBelow(group));
    return true;
}

std::vector<Slot> ConsolidatedTree::SlotsUnder(TreeNode node) const {
    if (node.IsLeaf())
        return {node.LeafSlot()};
    std::vector<Slot> slots;
    AppendLeaves(node.GroupId(), slots);
    const TreeGroup& group = groups_[node.GroupId()];
    for (const auto& [slot, counted] : leafless_) {
        if (Covers(group, slot))
            slots.push_back(slot);
    }
    return slots;
}

void ConsolidatedTree::AppendLeaves(GroupId id, std::vector<Slot>& slots) const {
    const TreeGroup& group = groups_[id];
    for (const RowEntry& entry : group.Children.Entries()) {
        if (group.Level == TreeLevel::Computer)
            slots.push_back(static_cast<Slot>(entry.Slot));
        else
            AppendLeaves(entry.Slot, slots);
    }
}

/// Whether a row without a leaf has what the groups from here up stand for.
bool ConsolidatedTree::Covers(const TreeGroup& group, Slot slot) const {
    const MessageRow& row = rows_[slot];
    switch (group.Level) {
        case TreeLevel::Root:
            return true;
        case TreeLevel::Alarm:
            return row.Texts[AlarmText] == group.Name;
        case TreeLevel::Type:
            return row.Type == group.Type && Covers(groups_[group.Parent], slot);
        default:
            return row.Texts[ComputerText] == group.Name && Covers(groups_[group.Parent], slot);
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

RowEntry ConsolidatedTree::LeafEntry(Slot slot, bool sorted) const {
    const MessageRow& row = rows_[slot];
    RowEntry entry = RowEntry::Of(slot);
    entry.Key = row.Arrival;
    if (sorted) {
        entry.Text = leaves_[static_cast<std::size_t>(slot)].Head;
        entry.Key = DateTextOrder(row.Date, rows_.DayFirst(slot));
    }
    return entry;
}

RowOrder::Rule ConsolidatedTree::RuleBelow(const TreeGroup& parent) const {
    RowOrder::Rule rule;
    if (parent.Level == TreeLevel::Root || parent.Level == TreeLevel::Type)
        rule.Texts = &rows_.Texts();
    if (parent.SortedLeaves) {
        rule.Texts = &heads_;
        rule.TextFirst = true;
    }
    return rule;
}

RowOrder::Arrivals ConsolidatedTree::ArrivalsBelow(const TreeGroup& parent) const {
    if (parent.Level == TreeLevel::Computer)
        return [this](std::uint32_t slot) { return rows_[static_cast<Slot>(slot)].Arrival; };
    return [this](std::uint32_t group) -> std::uint64_t { return groups_[group].Number; };
}

// ---- texts

std::string_view ConsolidatedTree::GroupName(const TreeGroup& group) const {
    return group.Level == TreeLevel::Type ? EventTypeName(group.Type) : rows_.Texts().Text(group.Name);
}

/// With the system's own separator, whatever the lists have.
std::string ConsolidatedTree::LeafDate(Slot slot) const {
    const DateStyle style{rows_.DayFirst(slot), "/"};
    return FormatAlarmDate(rows_[slot].Date, style.Pattern(), style.Separator);
}

}  // namespace tallyhorn
