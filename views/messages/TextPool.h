#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "records/SeededHash.h"

namespace tallyhorn {

/// A text's number in its pool; reused after the text was removed.
using TextId = std::uint32_t;

/// Owns one copy of each different text, since the same alarms and computers occur in thousands of rows, and
/// counts the references to each.  A text without references is removed.
class TextPool {
public:
    TextPool() = default;
    // The keys of a copied ids_ would point into the original's entries_.
    TextPool(const TextPool&) = delete;
    TextPool& operator=(const TextPool&) = delete;
    TextPool(TextPool&&) = default;
    TextPool& operator=(TextPool&&) = default;
    ~TextPool() = default;

    /// Adds the text if it is new, adds one reference to it, and returns its number.
    TextId Add(std::string_view text);
    /// Removes one reference to the text.
    void Release(TextId id);

    /// Returns nothing if the text is not in the pool.
    std::optional<TextId> Find(std::string_view text) const;
    /// Returns a view that is valid until the text's last reference is released.
    std::string_view Text(TextId id) const { return entries_[id].Text; }
    /// Returns the first eight bytes in upper case as one number with the same order.  Most comparisons need
    /// only this number.
    std::uint64_t SortPrefix(TextId id) const { return entries_[id].SortPrefix; }
    /// Returns less than, equal to or greater than zero if `a` sorts before, with or after `b`, ignoring
    /// case.
    int Compare(TextId a, TextId b) const;

    /// Returns a number greater than that of every text in the pool.
    std::size_t IdBound() const { return entries_.size(); }

private:
    struct Entry {
        std::string Text;
        std::uint64_t SortPrefix = 0;
        std::uint32_t Users = 0;
    };

    std::deque<Entry> entries_;
    std::vector<TextId> free_;
    std::unordered_map<std::string_view, TextId, SeededHash> ids_;  ///< the keys point into entries_
};

}  // namespace tallyhorn
