#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "views/messages/TextPool.h"

namespace tallyhorn {

/// Identifies an entry: a message's slot in a list or among leaves, a group's number among groups.
using RowId = std::int32_t;

/// One row of a list or one child of a group: its sort keys, its id, and whether the user has selected it.
struct RowEntry {
    std::uint64_t Key = 0;  ///< compared first, unless the rule says TextFirst
    TextId Text = 0;        ///< compared if the rule has a pool of texts
    std::uint32_t Id : 31 = 0;
    std::uint32_t Selected : 1 = 0;

    /// Makes an entry with this id, which must not be negative.
    static RowEntry Of(RowId id) {
        RowEntry entry;
        entry.Id = static_cast<std::uint32_t>(id) & 0x7FFFFFFFU;
        return entry;
    }
};

/// Owns an ordered sequence of entries, in blocks of at most 512, so that an insertion moves a few hundred
/// entries however long the sequence is.  Entries that compare equal keep the order in which they were added.
class RowOrder {
public:
    /// How entries are compared: by Key alone if `Texts` is null; otherwise by Key and then by their texts in
    /// `Texts`, or if TextFirst is set, by their texts and then by Key.
    struct Rule {
        const TextPool* Texts = nullptr;
        bool Descending = false;
        bool TextFirst = false;

        /// Returns less than, equal to or greater than zero if `a` sorts before, with or after `b`.
        int Compare(const RowEntry& a, const RowEntry& b) const;
    };

    /// Returns a number that is greater for entries added later; it decides between those that compare equal.
    using TieBreak = std::function<std::uint64_t(RowId id)>;

    std::size_t Size() const { return size_; }
    const RowEntry& At(std::size_t position) const;

    /// Adds the entry at the end.  The caller makes sure that this is its sorted position.
    void Append(const RowEntry& entry);
    /// Asks the processor to load the memory that the next Append will write.
    void PrefetchEnd() const;
    /// Adds the entry after all entries that sort before it or compare equal to it.
    void Insert(const RowEntry& entry, const Rule& rule);
    /// Replaces all entries by `entries`, which must be sorted.
    void Assign(const std::vector<RowEntry>& entries);
    void Clear() { Assign({}); }
    /// Replaces each entry by the one that `make` returns for its id, and sorts all entries.  Selected
    /// entries stay selected.
    void Resort(const std::function<RowEntry(RowId)>& make, const Rule& rule, const TieBreak& tieBreak);

    /// Returns the position of the entry with this id, or nothing if there is none.  Key and Text must be
    /// those with which the entry was added, because a binary search compares them.
    std::optional<std::size_t> PositionOf(const RowEntry& entry, const Rule& rule,
                                          const TieBreak& tieBreak) const;
    /// Returns how many entries sort before this one, which need not be among them.
    std::size_t CountBefore(const RowEntry& entry, const Rule& rule, const TieBreak& tieBreak) const;

    std::size_t SelectedCount() const { return selectedCount_; }
    /// Selects or deselects the entries at `first` to `last`, inclusive; both must exist.
    void Select(std::size_t first, std::size_t last, bool selected);
    void ClearSelection();
    /// Returns the ids of the selected entries in order.
    std::vector<RowId> SelectedIds() const;
    /// Removes the selected entries and returns their ids in order.
    std::vector<RowId> RemoveSelected();
    /// Removes the entries at `positions`, which must be in ascending order, and returns their ids in order.
    std::vector<RowId> RemoveAt(std::span<const std::size_t> positions);

    /// Returns a copy of all entries in order.
    std::vector<RowEntry> Entries() const;

private:
    struct Block {
        std::vector<RowEntry> Entries;  ///< never empty
        std::uint32_t Selected = 0;
    };
    struct Place {
        std::size_t Block = 0;
        std::size_t Offset = 0;
    };

    /// The positions [First, Last) of entries that compare equal.
    struct Range {
        std::size_t First = 0;
        std::size_t Last = 0;
    };

    Range EqualRange(const RowEntry& entry, const Rule& rule) const;
    std::size_t FirstNotBefore(const RowEntry& entry, Range equal, const TieBreak& tieBreak) const;
    Place Find(std::size_t position) const;
    template <typename SortsBefore>
    Place Partition(SortsBefore sortsBefore) const;
    std::size_t Position(Place place) const;
    void SplitBlock(std::size_t block);
    /// Removes from the block the entries for which `goes`, called with the offset and the entry, returns
    /// true, and adds their ids to `removed`.
    template <typename Goes>
    void RemoveFrom(Block& block, Goes goes, std::vector<RowId>& removed);
    void JoinSmallBlocks();
    const std::vector<std::size_t>& Starts() const;

    std::vector<Block> blocks_;
    std::size_t size_ = 0;
    std::size_t selectedCount_ = 0;
    mutable std::vector<std::size_t> starts_;  ///< position of each block's first entry; empty if out of date
};

}  // namespace tallyhorn
