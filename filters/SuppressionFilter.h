#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tallyhorn {

/// A text of exactly `Size` ANSI characters: a longer value is cut, a shorter one padded with blanks.
template <std::size_t Size>
class FixedText {
public:
    static constexpr std::size_t Width = Size;

    FixedText() : FixedText(std::string_view()) {}
    explicit FixedText(std::string_view text) { *this = text; }

    FixedText& operator=(std::string_view text) {
        const std::size_t kept = std::min(text.size(), Size);
        std::copy_n(text.begin(), kept, characters_.begin());
        std::fill(characters_.begin() + static_cast<std::ptrdiff_t>(kept), characters_.end(), ' ');
        return *this;
    }

    /// Returns all `Size` characters, including the padding.
    std::string_view View() const { return {characters_.data(), Size}; }

    bool operator==(const FixedText&) const = default;

private:
    std::array<char, Size> characters_;
};

/// The 16-bit booleans of the filter file.  Every value except FilterFalse is read as true.
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

/// The value of SuppressionFilter::EventID for a filter that accepts every event id.
inline constexpr std::int32_t AnyEventID = -1;

/// One suppression filter as the filter file stores it, with the fields in the order of the file.  A new one
/// is blank.  Encoding and decoding preserve every value of every field, even one that makes no sense.
struct SuppressionFilter {
    FixedText<50> FilterName;  ///< if it has only blanks and NULs, the filter is deleted and never matches
    std::int16_t UseDateRange = FilterFalse;
    double BeginDate = 0;         ///< days since 1899-12-30, inclusive
    double EndDate = 0;           ///< days since 1899-12-30, inclusive
    std::int32_t EventTypes = 0;  ///< bits of FilterEventTypes, or 0 to accept every type
    /// This text and the next three: blank to accept every text.  A text that fills its field also accepts
    /// longer ones that begin with it.
    FixedText<30> Source;
    FixedText<50> Category;
    FixedText<50> AccountName;
    FixedText<30> Computer;
    std::int32_t EventID = 0;

    bool operator==(const SuppressionFilter&) const = default;
};

/// A filter takes 448 bytes of the file.  The fields fill the first 236; the rest is written as zeros and
/// never read.
inline constexpr std::size_t FilterDataSize = 236;
inline constexpr std::size_t FilterRecordSize = 448;
using FilterRecord = std::array<char, FilterRecordSize>;

FilterRecord EncodeFilter(const SuppressionFilter& filter);
SuppressionFilter DecodeFilter(std::span<const char, FilterDataSize> data);

}  // namespace tallyhorn
