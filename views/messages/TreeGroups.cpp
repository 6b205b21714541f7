#include "views/messages/TreeGroups.h"

#include <utility>

namespace tallyhorn {
namespace {

std::uint64_t LabelKey(std::uint32_t number, GroupLabel name) {
    return (std::uint64_t{number} << 32U) | name;
}

}  // namespace

GroupId TreeGroups::Look(const Map& map, std::uint64_t key) {
    const auto found = map.find(key);
    return found == map.end() ? 0 : found->second;
}

GroupId TreeGroups::Find(GroupId parent, GroupLabel name) const {
    return Look(byLabel_, LabelKey(parent, name));
}

GroupId TreeGroups::FindComputer(GroupLabel alarm, EventType type, GroupLabel computer) const {
    return Look(computerByWay_, WayKey(alarm, type, computer));
}

/// Texts have numbers far below these, since each stands for one in memory.
std::uint64_t TreeGroups::WayKey(GroupLabel alarm, EventType type, GroupLabel computer) {
    constexpr unsigned TextBits = 30;
    return (static_cast<std::uint64_t>(type) << (2 * TextBits)) | (std::uint64_t{alarm} << TextBits) |
           computer;
}

std::uint64_t TreeGroups::WayTo(const TreeGroup& computer) const {
    return WayKey(groups_[groups_[computer.Parent].Parent].Name, computer.Type, computer.Name);
}

GroupId TreeGroups::Add(TreeGroup group) {
    if (group.Level != TreeLevel::Alarm &&
        !KeysOf(group.Level).insert(LabelKey(group.KeyNumber, group.Name)).second)
        return 0;
    auto id = static_cast<GroupId>(groups_.Size());
    if (free_.empty()) {
        groups_.GrowTo(groups_.Size() + 1);
    } else {
        id = free_.back();
        free_.pop_back();
    }
    byLabel_.emplace(LabelKey(group.Parent, group.Name), id);
    if (group.Level == TreeLevel::Computer)
        computerByWay_.emplace(WayTo(group), id);
    group.Alive = true;
    groups_[id] = std::move(group);
    return id;
}

void TreeGroups::Remove(GroupId id) {
    TreeGroup& group = groups_[id];
    byLabel_.erase(LabelKey(group.Parent, group.Name));
    if (group.Level == TreeLevel::Computer)
        computerByWay_.erase(WayTo(group));
    if (group.Level != TreeLevel::Alarm)
        KeysOf(group.Level).erase(LabelKey(group.KeyNumber, group.Name));
    group = TreeGroup();
    free_.push_back(id);
}

void TreeGroups::Clear() {
    groups_.Clear();
    groups_.GrowTo(1);
    groups_[0].Alive = true;
    free_.clear();
    byLabel_.clear();
    computerByWay_.clear();
    typeKeys_.clear();
    computerKeys_.clear();
}

}  // namespace tallyhorn
