#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "views/messages/MessageStore.h"
#include "views/messages/TextPool.h"

namespace tallyhorn {

/// One row's place in a list: what it sorts by, whose it is, and whether the user has selected it.
struct RowEntry {
    std::uint64_t Key = 0;  ///< orders before anything else
    TextId Text = 0;        ///< decides between equal keys where the order is by text
    std::uint32_t Slot : 31 = 0;
    std::uint32_t Selected : 1 = 0;

    /// For a slot, or any other number from 0 on.
    static RowEntry Of(tallyhorn::Slot slot) {
        RowEntry entry;
        entry.Slot = static_cast<std::uint32_t>(slot) & 0x7FFFFFFFU;
        return entry;
    }
};

/// Lets the processor fetch the memory there, where the compiler has a word for it.
inline void FetchForWriting([[maybe_unused]] const void* place) {
#ifdef __GNUC__
    __builtin_prefetch(place, 1);
#endif
}

/// The order of a list's rows in blocks of some hundreds, so that a row goes into its place among a million
/// as into its place among a thousand.  Equal entries stay in the order in which they came.  User-interface
/// thread only.
class RowOrder {
public:
    /// How entries compare: by Key alone, by Key and then by the text in `Texts`, or the other way round.
    struct Rule {
        const TextPool* Texts = nullptr;
        bool Descending = false;
        bool TextFirst = false;

        /// Less than, equal to or greater than zero as `a` belongs before, with or after `b`.
        int Compare(const RowEntry& a, const RowEntry& b) const;
    };

    std::size_t Size() const { return size_; }
    const RowEntry& At(std::size_t position) const;

    /// Tells entries that compare equal apart: grows from one that came to the next, given its Slot.
    using Arrivals = std::function<std::uint64_t(std::uint32_t slot)>;

    /// Puts the entry behind all others, where it belongs there.
    void Append(const RowEntry& entry);
    /// Lets the processor fetch where Append will write.
    void FetchEnd() const {
        if (!blocks_.empty())
            FetchForWriting(blocks_.back().Entries.data() + blocks_.back().Entries.size());
    }
    /// Puts the entry behind all that it does not belong before.
    void Insert(const RowEntry& entry, const Rule& rule);
    /// Takes `entries`, which are in order, instead of what was there.
    void Assign(const std::vector<RowEntry>& entries);
    void Clear() { Assign({}); }
    /// Makes each entry anew, its selection apart, and puts all of them in order.
    void Resort(const std::function<RowEntry(Slot)>& make, const Rule& rule, const Arrivals& arrivals);

    /// Where the entry with this Slot stands, made as it was when it came in; nothing where it is not here.
    std::optional<std::size_t> PositionOf(const RowEntry& entry, const Rule& rule,
                                          const Arrivals& arrivals) const;

    std::size_t SelectedCount() const { return selectedCount_; }
    /// Positions first to last, both within the list.
    void Select(std::size_t first, std::size_t last, bool selected);
    void ClearSelection();
    /// In list order.
    std::vector<Slot> SelectedSlots() const;
    /// One pass over the blocks that hold selected entries; gives their slots in list order.
    std::vector<Slot> RemoveSelected();
    /// The same for the entries at `positions`, which ascend.
    std::vector<Slot> RemoveAt(std::span<const std::size_t> positions);

    /// Every entry in order.
    std::vector<RowEntry> Entries() const;

private:
    struct Block {
        std::vector<RowEntry> Entries;
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
    Place Find(std::size_t position) const;
    template <typename Belongs>
    Place Partition(Belongs belongsBefore) const;
    std::size_t Position(Place place) const;
    void SplitBlock(std::size_t block);
    /// Leaves no block empty, and few blocks where few rows are left.
    void JoinSmallBlocks();
    const std::vector<std::size_t>& Starts() const;

    std::vector<Block> blocks_;
    std::size_t size_ = 0;
    std::size_t selectedCount_ = 0;
    mutable std::vector<std::size_t> starts_;  ///< first position of each block; empty where out of date
};

}  // namespace tallyhorn
