#include "views/messages/TreeGroups.h"

#include <string>
#include <string_view>
#include <utility>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

std::uint64_t LabelKey(GroupId parent, GroupLabel name) {
    return (std::uint64_t{parent} << 32U) | name;
}

std::string NumberText(const TreeGroup& group) {
    return PadWithZeros(std::to_string(group.KeyNumber), 4);
}

std::string_view NameOf(const TreeGroup& group, const TextPool& texts) {
    return group.Level == TreeLevel::Type ? EventTypeName(group.Type) : texts.Text(group.Name);
}

/// Returns the part of the name that is shown after a removal. compatibility: the name is cut off at its
/// first "(", because the count begins with "(" too.
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

std::string GroupText(const TreeGroup& group, const TextPool& texts) {
    const std::string_view name = NameOf(group, texts);
    std::string text(group.Form == TreeGroup::CountForm::AfterRemoval ? BeforeCount(name) : name);
    if (group.Form == TreeGroup::CountForm::One)
        return text.append(" ( 1 Event )");
    return text.append(" ( ").append(std::to_string(group.Count)).append(" Events )");
}

std::string GroupKey(const TreeGroup& group, const TextPool& texts) {
    switch (group.Level) {
        case TreeLevel::Alarm:
            return "ALARM_" + std::string(NameOf(group, texts));
        case TreeLevel::Type:
            return "EVENT_" + NumberText(group) + "_" + std::string(EventTypeKey(group.Type));
        default:
            return "COMPUTER_" + NumberText(group) + "_" + std::string(NameOf(group, texts));
    }
}

GroupId TreeGroups::Look(const Map& map, std::uint64_t key) {
    const auto found = map.find(key);
    return found == map.end() ? 0 : found->second;
}

GroupId TreeGroups::Find(GroupId parent, GroupLabel name) const {
    return Look(byLabel_, LabelKey(parent, name));
}

GroupId TreeGroups::FindComputer(GroupLabel alarm, EventType type, GroupLabel computer) const {
    return Look(computerByPath_, PathKey(alarm, type, computer));
}

/// Packs the labels into one number.  The number of a text fits into 30 bits, because a pool with more texts
/// would not fit into memory.
std::uint64_t TreeGroups::PathKey(GroupLabel alarm, EventType type, GroupLabel computer) {
    constexpr unsigned TextBits = 30;
    return (static_cast<std::uint64_t>(type) << (2 * TextBits)) | (std::uint64_t{alarm} << TextBits) |
           computer;
}

std::uint64_t TreeGroups::PathKeyOf(const TreeGroup& computer) const {
    return PathKey(groups_[groups_[computer.Parent].Parent].Name, computer.Type, computer.Name);
}

GroupId TreeGroups::Add(TreeGroup group) {
    if (group.Level != TreeLevel::Alarm)
        group.KeyNumber = NumbersOf(group.Level).Take(group.Name, group.KeyNumber);
    auto id = static_cast<GroupId>(groups_.Size());
    if (free_.empty()) {
        groups_.GrowTo(groups_.Size() + 1);
    } else {
        id = free_.back();
        free_.pop_back();
    }
    byLabel_.emplace(LabelKey(group.Parent, group.Name), id);
    if (group.Level == TreeLevel::Computer)
        computerByPath_.emplace(PathKeyOf(group), id);
    group.Alive = true;
    groups_[id] = std::move(group);
    return id;
}

void TreeGroups::Remove(GroupId id) {
    TreeGroup& group = groups_[id];
    byLabel_.erase(LabelKey(group.Parent, group.Name));
    if (group.Level == TreeLevel::Computer)
        computerByPath_.erase(PathKeyOf(group));
    if (group.Level != TreeLevel::Alarm)
        NumbersOf(group.Level).Release(group.Name, group.KeyNumber);
    group = TreeGroup();
    free_.push_back(id);
}

void TreeGroups::Clear() {
    groups_.Clear();
    groups_.GrowTo(1);
    groups_[0].Alive = true;
    free_.clear();
    byLabel_.clear();
    computerByPath_.clear();
    typeNumbers_.Clear();
    computerNumbers_.Clear();
}

}  // namespace tallyhorn
