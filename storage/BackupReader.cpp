#include "storage/BackupReader.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// Enough for the longest text, because lengths have at most five digits.
constexpr std::size_t BufferSize = std::size_t{256} << 10U;
constexpr int LengthsPerCall = 2000;

/// Returns the number that `digits` contains, or nothing if it is negative or `digits` is not a number.
std::optional<std::size_t> LengthFrom(std::string_view digits) {
    std::int32_t length = 0;
    if (!ReadInt32(digits, length) || length < 0)
        return std::nullopt;
    return static_cast<std::size_t>(length);
}

}  // namespace

BackupReader::BackupReader(ByteSource& source) : source_(source), buffer_(BufferSize) {}

BackupReader::Step BackupReader::Next(std::string_view& text) {
    for (int i = 0; i < LengthsPerCall; ++i) {
        const std::string_view digits = Take(BackupLengthDigits);
        if (digits.empty())
            return Step::End;
        const std::optional<std::size_t> length = LengthFrom(digits);
        damaged_ = damaged_ || !length;
        if (length.value_or(0) < ShortestBackupText)
            continue;
        text = Take(*length);
        damaged_ = damaged_ || text.empty();
        return text.empty() ? Step::End : Step::Text;
    }
    return Step::NotYet;
}

/// Returns the next `count` bytes.  If the source has fewer bytes left, discards them and returns an empty
/// view.
std::string_view BackupReader::Take(std::size_t count) {
    while (end_ - begin_ < count) {
        if (!ReadMore()) {
            damaged_ = damaged_ || begin_ < end_;
            begin_ = end_;
            return {};
        }
    }
    const std::string_view taken(buffer_.data() + begin_, count);
    begin_ += count;
    return taken;
}

bool BackupReader::ReadMore() {
    if (begin_ > 0) {
        const auto first = buffer_.begin();
        std::copy(first + static_cast<std::ptrdiff_t>(begin_), first + static_cast<std::ptrdiff_t>(end_),
                  first);
        end_ -= begin_;
        begin_ = 0;
    }
    const std::size_t read = source_.Read(std::span(buffer_).subspan(end_));
    end_ += read;
    return read > 0;
}

}  // namespace tallyhorn
