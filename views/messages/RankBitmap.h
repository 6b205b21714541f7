#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallyhorn {

/// A bitmap with rank queries: Add sets the next bit, Remove clears one, and Rank counts the set bits up to a
/// given one.  The tree uses it to know which of the nodes that still exist is the 1st, 2nd, 3rd ... made.
class RankBitmap {
public:
    /// A bit's index; grows by one with each Add.
    using Index = std::uint32_t;

    Index Add();
    /// `index` is set.
    void Remove(Index index);
    void Clear();

    /// Returns the number of set bits from the first to the one at `index`, which is set: 1 for the first.
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
    /// Removes the clear bits.  The caller replaces every index that it holds by the mapped one.
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
