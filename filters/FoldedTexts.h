#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tallyhorn {

/// Owns a set of texts in upper case, each with a number of its own, so that texts which differ in case alone
/// compare as one integer.  One thread at a time may call it.  A table of its own, because a look-up in the
/// standard library's map takes twice as long as a whole match takes with this one.
class FoldedTexts {
public:
    using Id = std::uint32_t;
    /// What Find gives for a text that was never added.
    static constexpr Id Unknown = 0;
    /// The longest text that can be added, a filter's longest field; so long is the work for any text at
    /// most.
    static constexpr std::size_t MaxSize = 50;

    /// The text's number: its own if it is there, else the next from 1 on.
    Id Add(std::string_view text);
    Id Find(std::string_view text) const;
    /// How many texts have a number.
    Id Count() const { return count_; }

private:
    /// A text in upper case; the bytes after its size are not set.
    struct Folded {
        Folded() = default;
        explicit Folded(std::string_view text);
        std::array<char, MaxSize> Characters;
        std::uint8_t Size = 0;
        std::uint32_t Hash = 0;
    };
    /// One cache line, so that a look-up touches little more than one.
    struct Slot {
        Folded Text;
        Id Number = Unknown;  ///< Unknown for a free slot
    };

    /// The slot that holds the text, or the free one where it would stand.
    std::size_t Locate(const Folded& text) const;
    void Grow();

    std::vector<Slot>
        slots_;  ///< a power of two, at most half of them taken; a text stands at its hash or after
    Id count_ = 0;
};

}  // namespace tallyhorn
