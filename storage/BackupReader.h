#pragma once

#include <string_view>
#include <vector>

#include "platform/ByteSource.h"

namespace tallyhorn {

/// The number of decimal digits in the length that precedes each text of a backup file.
constexpr std::size_t BackupLengthDigits = 5;
/// compatibility: a smaller length is not followed by a text but directly by the next length.
constexpr std::size_t ShortestBackupText = 20;

/// Splits a backup file into its texts.  The memory it needs does not depend on the file's contents.  If the
/// file is damaged, any bytes may be read as lengths, and the texts may differ from those that were saved.
/// The source must outlive this object.
class BackupReader {
public:
    enum class Step { Text, NotYet, End };

    explicit BackupReader(ByteSource& source);

    /// Sets `text` to the next text, which stays valid until the next call.  Returns `NotYet` after ten
    /// thousand bytes without a text, so that the caller can let events run.  A length that is not a number
    /// counts as 0, so the search goes on with the next five bytes.  A text that is cut off at the end of the
    /// file is not returned.
    Step Next(std::string_view& text);
    /// Returns whether some bytes so far belong to no record, because a length is negative or not a number,
    /// or because the file ends within a length or a text.  A length below ShortestBackupText alone is no
    /// damage, since the format permits it; a short text behind it is found as a length that is not a number.
    bool Damaged() const { return damaged_; }

private:
    std::string_view Take(std::size_t count);
    bool ReadMore();

    ByteSource& source_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool damaged_ = false;
};

}  // namespace tallyhorn
