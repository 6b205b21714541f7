#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tallyhorn {

/// A text of exactly `Size` ANSI characters: a longer value is cut, a shorter one padded with blanks.
/// A plain value, safe in any thread.
template <std::size_t Size>
class FixedText {
public:
    FixedText() : FixedText(std::string_view()) {}
    explicit FixedText(std::string_view text) { *this = text; }

    FixedText& operator=(std::string_view text) {
        const std::size_t kept = std::min(text.size(), Size);
        std::copy_n(text.begin(), kept, characters_.begin());
        std::fill(characters_.begin() + static_cast<std::ptrdiff_t>(kept), characters_.end(), ' ');
        return *this;
    }

    /// All `Size` characters, padding included.
    std::string_view View() const { return {characters_.data(), Size}; }

    bool operator==(const FixedText&) const = default;

private:
    std::array<char, Size> characters_;
};

/// The 16-bit booleans of the filter file; any value but False reads as true.
inline constexpr std::int16_t FilterTrue = -1;
inline constexpr std::int16_t FilterFalse = 0;

/// The bits of SuppressionFilter::EventTypes.
enum FilterEventTypes : std::int32_t {
    FilterInformation = 1,
    FilterWarning = 2,
    FilterError = 4,
    FilterFailureAudit = 8,
    FilterSuccessAudit = 16,
};

/// An event id that a filter does not test.
inline constexpr std::int32_t AnyEventID = -1;

/// One suppression filter as its file holds it, fields in the file's order; a new one is blank.
/// A plain value, safe in any thread; every value of every field survives the way to the file and back.
struct SuppressionFilter {
    FixedText<50> FilterName;  ///< blank (blanks and NULs alone): a free slot, never matched
    std::int16_t UseDateRange = FilterFalse;
    double BeginDate = 0;         ///< days since 1899-12-30, inclusive
    double EndDate = 0;           ///< the same, inclusive
    std::int32_t EventTypes = 0;  ///< FilterEventTypes, or 0 for any
    FixedText<30> Source;         ///< blank for any, as in the next three
    FixedText<50> Category;
    FixedText<50> AccountName;
    FixedText<30> Computer;
    std::int32_t EventID = 0;

    bool operator==(const SuppressionFilter&) const = default;
};

/// A record's bytes in the file, and the slot that holds them; the slot's rest is zeros and never read.
inline constexpr std::size_t FilterDataSize = 236;
inline constexpr std::size_t FilterSlotSize = 448;
using FilterSlot = std::array<char, FilterSlotSize>;

FilterSlot EncodeFilter(const SuppressionFilter& filter);
SuppressionFilter DecodeFilter(std::span<const char, FilterDataSize> data);

}  // namespace tallyhorn
