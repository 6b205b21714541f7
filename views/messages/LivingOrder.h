#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallyhorn {

/// Counts things in the order in which they came: how many of those before a given one are still there.  Each
/// has a number that grows from one to the next.  User-interface thread only.
class LivingOrder {
public:
    using Number = std::uint32_t;

    Number Add();
    /// Each number at most once.
    void Remove(Number number);
    void Clear();

    /// From 1 on; moves down when something before it goes.
    std::size_t PositionOf(Number number) const;
    std::size_t Size() const { return size_; }

    /// Tells what is left its new number by its old one.
    class NewNumbers {
    public:
        explicit NewNumbers(std::vector<std::uint64_t> words);
        Number operator()(Number old) const;

    private:
        std::vector<std::uint64_t> words_;
        std::vector<Number> starts_;  ///< how many are left before each word
    };

    /// Whether so many are gone that giving out new numbers pays.
    bool WantsRenumbering() const { return given_ >= FewestToRenumber && given_ / 2 > size_; }
    /// Numbers what is left anew, from 0 on in the same order; everything has to take its new number then.
    NewNumbers Renumber();

private:
    static constexpr std::size_t FewestToRenumber = 8192;
    static constexpr std::size_t WordBits = 64;
    static constexpr std::size_t WordsOfGroup = 64;

    std::vector<std::uint64_t> words_;        ///< a bit for each number given, set while it lives
    std::vector<std::uint32_t> groupCounts_;  ///< set bits of each 64 words, so that few words are looked at
    std::size_t given_ = 0;
    std::size_t size_ = 0;
};

}  // namespace tallyhorn
