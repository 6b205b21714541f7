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

using TextId = std::uint32_t;

/// Holds each different text of the rows once and counts its users, since alarms and computers repeat a
/// thousandfold; a text without users is gone, so that what it holds is bounded by the rows.  User-interface
/// thread only.
class TextPool {
public:
    TextPool() = default;
    // A copy's index would point into the original.
    TextPool(const TextPool&) = delete;
    TextPool& operator=(const TextPool&) = delete;
    TextPool(TextPool&&) = default;
    TextPool& operator=(TextPool&&) = default;
    ~TextPool() = default;

    /// Adds one user to the text.
    TextId Add(std::string_view text);
    /// Takes one user away.
    void Release(TextId id);

    /// Nothing for a text that has no user.
    std::optional<TextId> Find(std::string_view text) const;
    /// Valid until the text's last user is released.
    std::string_view Text(TextId id) const { return entries_[id].Text; }
    /// The first eight bytes in upper case as one number that orders as they do: most comparisons end here.
    std::uint64_t SortPrefix(TextId id) const { return entries_[id].SortPrefix; }
    /// Less than, equal to or greater than zero, without regard to case.
    int Compare(TextId a, TextId b) const;

    std::size_t Size() const { return ids_.size(); }
    /// Above the number of every text here.
    std::size_t IdBound() const { return entries_.size(); }

private:
    struct Entry {
        std::string Text;
        std::uint64_t SortPrefix = 0;
        std::uint32_t Users = 0;
    };

    std::deque<Entry> entries_;
    std::vector<TextId> free_;
    std::unordered_map<std::string_view, TextId, SeededHash> ids_;  ///< keys lie in entries_
};

}  // namespace tallyhorn
