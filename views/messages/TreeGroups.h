#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "records/EventTypes.h"
#include "records/SeededHash.h"
#include "views/messages/ChunkedArray.h"
#include "views/messages/KeyNumbers.h"
#include "views/messages/RankBitmap.h"
#include "views/messages/RowOrder.h"
#include "views/messages/TreeNode.h"

namespace tallyhorn {

/// Identifies a group among its parent's children: the TextId of an alarm or computer, or an EventType.
using GroupLabel = std::uint32_t;

/// The data of one group of the tree.
struct TreeGroup {
    /// How the count is written: "( 1 Event )", "( 2 Events )", or after a removal always with "Events": "( 1
    /// Events )".
    enum class CountForm : std::uint8_t { One, Many, AfterRemoval };

    std::uint32_t Count = 0;
    GroupId Parent = 0;
    GroupLabel Name = 0;
    RankBitmap::Index NodeIndex = 0;
    std::uint32_t KeyNumber = 0;  ///< the number in the key: see ConsolidatedTree::Key
    TreeLevel Level = TreeLevel::Root;
    EventType Type{};
    CountForm Form = CountForm::One;
    bool SortedLeaves = false;
    bool Alive = false;
    RowOrder Children;
};

/// Owns the groups of the consolidated tree and finds them by their labels.  The numbers of removed groups
/// are reused.
class TreeGroups {
public:
    TreeGroups() { Clear(); }

    TreeGroup& operator[](GroupId id) { return groups_[id]; }
    const TreeGroup& operator[](GroupId id) const { return groups_[id]; }
    /// Returns a number greater than that of every group.
    std::size_t Size() const { return groups_.Size(); }
    bool Holds(GroupId id) const { return id < groups_.Size() && groups_[id].Alive; }

    /// Returns the parent's child with that label, or 0 if there is none.
    GroupId Find(GroupId parent, GroupLabel name) const;
    /// Returns the computer's group with these labels on the three levels, or 0 if there is none.
    GroupId FindComputer(GroupLabel alarm, EventType type, GroupLabel computer) const;

    /// Adds the group and returns its number.  If another event type or computer with the same Name has its
    /// KeyNumber, the group gets the next free number.
    GroupId Add(TreeGroup group);
    void Remove(GroupId id);
    /// Removes all groups except the root.
    void Clear();

    /// Calls `change` with the group and all groups above it, up to the root.
    template <typename Change>
    void ForEachUpwards(GroupId id, Change change) {
        for (;; id = groups_[id].Parent) {
            change(groups_[id]);
            if (id == 0)
                return;
        }
    }

private:
    using Map = std::unordered_map<std::uint64_t, GroupId, SeededHash>;

    static GroupId Look(const Map& map, std::uint64_t key);
    static std::uint64_t PathKey(GroupLabel alarm, EventType type, GroupLabel computer);
    std::uint64_t PathKeyOf(const TreeGroup& computer) const;
    KeyNumbers& NumbersOf(TreeLevel level) {
        return level == TreeLevel::Type ? typeNumbers_ : computerNumbers_;
    }

    ChunkedArray<TreeGroup> groups_;
    std::vector<GroupId> free_;
    Map byLabel_;
    Map computerByPath_;
    KeyNumbers typeNumbers_;
    KeyNumbers computerNumbers_;
};

/// Returns the group's name and its count, such as "Disk full ( 1 Event )" or "Warning ( 12 Events )".
/// `texts` is the pool of the channel's rows.
std::string GroupText(const TreeGroup& group, const TextPool& texts);
/// Returns the group's key; see ConsolidatedTree::Key.
std::string GroupKey(const TreeGroup& group, const TextPool& texts);

}  // namespace tallyhorn
