#pragma once

#include <cstddef>
#include <string>

#include "records/AlarmRecord.h"
#include "views/messages/ChunkedArray.h"
#include "views/messages/MessageRows.h"
#include "views/messages/RankBitmap.h"
#include "views/messages/RowOrder.h"
#include "views/messages/TextPool.h"
#include "views/messages/TreeNode.h"

namespace tallyhorn {

/// The data of one leaf of the tree.
struct TreeLeaf {
    GroupId Computer = 0;  ///< the leaf's parent; 0 if the slot has no leaf
    TextId Head = 0;       ///< the text before the date
    RankBitmap::Index NodeIndex = 0;
};

/// Owns the leaves of the consolidated tree, indexed by slot, and one copy of each text before a date, which
/// many leaves share.  A leaf's date is read from its message's row.
class TreeLeaves {
public:
    /// `rows` must outlive this object.
    explicit TreeLeaves(const MessageRows& rows) : rows_(rows) {}

    std::size_t Count() const { return count_; }
    bool Holds(Slot slot) const;
    /// Returns the leaf of `slot`, which must exist.
    const TreeLeaf& operator[](Slot slot) const { return leaves_[static_cast<std::size_t>(slot)]; }

    /// Adds one reference to the text before the date of a leaf that is about to be added, and returns the
    /// text's number.
    TextId AddHead(const AlarmRecord& alarm);

    /// Adds a leaf; `leaf.Head` is from AddHead and is released with the leaf.
    void Add(Slot slot, const TreeLeaf& leaf);
    void Remove(Slot slot);
    void Clear();
    void MapNodeIndexes(const RankBitmap::NewIndexes& newIndex);

    std::string Text(Slot slot) const;
    std::string Key(Slot slot) const;
    /// Returns the leaf's entry with the sort keys for the order by text if `byText`, otherwise by arrival.
    RowEntry Entry(Slot slot, bool byText) const;
    const TextPool& Heads() const { return heads_; }

private:
    const MessageRows& rows_;
    ChunkedArray<TreeLeaf> leaves_;
    std::size_t count_ = 0;
    TextPool heads_;
    std::string headBuffer_;
};

}  // namespace tallyhorn
