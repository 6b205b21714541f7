#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallyhorn {

/// A bitmap with rank queries: Add appends a set bit, Remove clears a bit, and Rank counts the set bits up to
/// a given one.  The tree uses it to know which of the nodes that still exist is the 1st, 2nd, 3rd ... made.
class RankBitmap {
public:
    /// The index of a bit: 0 for the first that was added, and one more for each later one.
    using Index = std::uint32_t;

    Index Add();
    /// Clears the bit at `index`, which must be set.
    void Remove(Index index);
    void Clear();

    /// Returns the number of set bits from the first to the one at `index`, which must be set: 1 for the
    /// first.
    std::size_t Rank(Index index) const;

    /// Maps the index that a set bit had before Compact to its index afterwards.
    class NewIndexes {
    public:
        explicit NewIndexes(std::vector<std::uint64_t> words);
        Index operator()(Index old) const;

    private:
        std::vector<std::uint64_t> words_;
        std::vector<Index> setBefore_;  ///< for each word the number of set bits in the words before it
    };

    /// Returns true if most of a large bitmap's bits are clear.
    bool IsSparse() const { return size_ >= FewestToCompact && size_ / 2 > setBits_; }
    /// Removes the clear bits.  The caller must replace each index that it has stored by the mapped one.
    NewIndexes Compact();

private:
    static constexpr std::size_t FewestToCompact = 8192;
    static constexpr std::size_t WordBits = 64;
    static constexpr std::size_t WordsPerGroup = 64;

    std::vector<std::uint64_t> words_;
    std::vector<std::uint32_t> groupCounts_;  ///< set bits of each 64 words: Rank reads 63 words at most
    std::size_t size_ = 0;
    std::size_t setBits_ = 0;
};

}  // namespace tallyhorn
