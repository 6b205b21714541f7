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

/// A text's number in its pool; reused once the text is gone.
using TextId = std::uint32_t;

/// Owns one copy of each different text, since the same alarms and computers occur in thousands of rows, and
/// counts the users of each.  A text without users is removed.
class TextPool {
public:
    TextPool() = default;
    // The keys of a copied ids_ would point into the original's entries_.
    TextPool(const TextPool&) = delete;
    TextPool& operator=(const TextPool&) = delete;
    TextPool(TextPool&&) = default;
    TextPool& operator=(TextPool&&) = default;
    ~TextPool() = default;

    /// Adds one user to the text and returns its number.
    TextId Add(std::string_view text);
    /// Removes one user from the text.
    void Release(TextId id);

    /// Returns nothing for a text that has no user.
    std::optional<TextId> Find(std::string_view text) const;
    /// Returns a view that is valid until the text's last user is released.
    std::string_view Text(TextId id) const { return entries_[id].Text; }
    /// Returns the first eight bytes in upper case as one number that sorts as they do: most comparisons need
    /// no more.
    std::uint64_t SortPrefix(TextId id) const { return entries_[id].SortPrefix; }
    /// Returns less than, equal to or greater than zero, ignoring case.
    int Compare(TextId a, TextId b) const;

    /// Greater than the number of every text in the pool.
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
