#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "records/EventTypes.h"
#include "records/SeededHash.h"
#include "views/messages/ChunkedArray.h"
#include "views/messages/LivingOrder.h"
#include "views/messages/RowOrder.h"
#include "views/messages/TreeNode.h"

namespace tallyhorn {

/// A group's number; the root has 0.
using GroupId = std::uint32_t;
/// What a group stands for: the text of an alarm or computer, the number of an event type.
using GroupLabel = std::uint32_t;

/// What the tree holds of one group.
struct TreeGroup {
    /// How a group tells its count: the first notification, more of them, or what a removal left.
    enum class CountForm : std::uint8_t { One, Many, AfterRemoval };

    std::uint32_t Count = 0;
    GroupId Parent = 0;
    GroupLabel Name = 0;
    LivingOrder::Number Number = 0;
    std::uint32_t KeyNumber = 0;  ///< the parent's position when the group was made
    TreeLevel Level = TreeLevel::Root;
    EventType Type{};
    CountForm Form = CountForm::One;
    bool SortedLeaves = false;
    bool Alive = false;
    RowOrder Children;
};

/// Owns the groups of the consolidated tree and finds them by what they stand for.  User-interface thread
/// only.
class TreeGroups {
public:
    TreeGroups() { Clear(); }

    TreeGroup& operator[](GroupId id) { return groups_[id]; }
    const TreeGroup& operator[](GroupId id) const { return groups_[id]; }
    /// Beyond the largest number that was ever given.
    std::size_t Size() const { return groups_.Size(); }
    bool Holds(GroupId id) const { return id < groups_.Size() && groups_[id].Alive; }

    /// 0 where there is none.
    GroupId Find(GroupId parent, GroupLabel name) const;
    /// The same for a computer by all three labels at once.
    GroupId FindComputer(GroupLabel alarm, EventType type, GroupLabel computer) const;

    /// A new group; 0 where another one has its key: for a type or computer the KeyNumber and the name.
    GroupId Add(TreeGroup group);
    void Remove(GroupId id);
    /// Leaves the root alone.
    void Clear();

    /// Calls `change` with the group and all that it hangs under, the root last.
    template <typename Change>
    void ForEachUpwards(GroupId id, Change change) {
        for (;; id = groups_[id].Parent) {
            change(groups_[id]);
            if (id == 0)
                return;
        }
    }

private:
    using Keys = std::unordered_set<std::uint64_t, SeededHash>;
    using Map = std::unordered_map<std::uint64_t, GroupId, SeededHash>;

    static GroupId Look(const Map& map, std::uint64_t key);
    static std::uint64_t WayKey(GroupLabel alarm, EventType type, GroupLabel computer);
    std::uint64_t WayTo(const TreeGroup& computer) const;
    Keys& KeysOf(TreeLevel level) { return level == TreeLevel::Type ? typeKeys_ : computerKeys_; }

    ChunkedArray<TreeGroup> groups_;
    std::vector<GroupId> free_;
    Map byLabel_;
    Map computerByWay_;
    Keys typeKeys_;
    Keys computerKeys_;
};

}  // namespace tallyhorn
