#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"
#include "storage/JournalFormat.h"

namespace tallyhorn {

/// Reads the records of a journal.  Returns no record of a frame whose check does not match.  After damaged
/// bytes it searches for the next whole frame.  The source must outlive this object.
class JournalReader {
public:
    explicit JournalReader(ByteSource& source) : source_(source) {}

    /// Returns the header, or nothing if the source does not begin with one.  To be called first.
    std::optional<JournalHeader> ReadHeader();
    /// Sets `record`, whose text stays valid until the next call.  Returns false at the end.
    bool Next(JournalRecord& record);

    /// Returns whether the source is shorter than a header, since the process that created it was killed.
    bool IsEmpty() const { return atEnd_ && buffer_.size() < JournalHeaderSize; }
    /// Returns the offset of the first byte after the last whole frame: bytes from there on are the rest of a
    /// write that was interrupted.
    std::uint64_t End() const { return end_; }
    /// Returns how many bytes between whole frames were damaged.
    std::uint64_t Damaged() const { return damaged_; }

private:
    bool ReadFrame();
    bool Fill(std::size_t size);

    ByteSource& source_;
    std::string buffer_;
    std::size_t position_ = 0;       ///< the offset in `buffer_` of the next unread byte
    std::uint64_t bufferStart_ = 0;  ///< the offset of `buffer_` in the source
    std::string_view body_;          ///< the unread records of the current frame, a part of `buffer_`
    bool atEnd_ = false;             ///< whether the source has no more bytes
    std::uint64_t end_ = 0;
    std::uint64_t damaged_ = 0;
};

}  // namespace tallyhorn
