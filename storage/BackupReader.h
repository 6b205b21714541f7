#pragma once

#include <string_view>
#include <vector>

#include "platform/ByteSource.h"

namespace tallyhorn {

/// Characters of the decimal length before each text of a backup file.
constexpr std::size_t BackupLengthDigits = 5;
/// A shorter text is not taken for one: what follows its length is read as the next length.
constexpr std::size_t ShortestBackupText = 20;

/// Cuts a backup file into its texts, in the memory of one buffer whatever the file holds; a damaged file
/// gives what the lengths in it lead to.  One thread at a time; the source must outlive it.
class BackupReader {
public:
    enum class Step { Text, NotYet, End };

    explicit BackupReader(ByteSource& source);

    /// `text` is one record's and holds until the next call.  `NotYet` after some ten thousand bytes without
    /// any, so that a caller can do something else in between.  A length that is no number counts as 0; a
    /// record that the file ends within gives no text.
    Step Next(std::string_view& text);

private:
    std::string_view Take(std::size_t count);
    bool ReadMore();

    ByteSource& source_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

}  // namespace tallyhorn
