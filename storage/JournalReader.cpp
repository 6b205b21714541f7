#include "storage/JournalReader.h"

#include <algorithm>
#include <span>

namespace tallyhorn {
namespace {

constexpr std::size_t ReadSize = std::size_t{64} << 10U;

}  // namespace

/// Makes at least `size` unread bytes available in the buffer.  Returns false if the source has fewer.
bool JournalReader::Fill(std::size_t size) {
    if (buffer_.size() - position_ >= size)
        return true;
    // Only a buffer that is mostly used is moved, because damaged bytes can ask for large frames often.
    if (position_ >= buffer_.size() / 2) {
        buffer_.erase(0, position_);
        bufferStart_ += position_;
        position_ = 0;
    }
    while (!atEnd_ && buffer_.size() - position_ < size) {
        const std::size_t old = buffer_.size();
        buffer_.resize(old + ReadSize);
        const std::size_t count = source_.Read(std::span(buffer_).subspan(old));
        buffer_.resize(old + count);
        atEnd_ = count == 0;
    }
    return buffer_.size() - position_ >= size;
}

std::optional<JournalHeader> JournalReader::ReadHeader() {
    if (!Fill(JournalHeaderSize))
        return std::nullopt;
    const std::optional<JournalHeader> header =
        DecodeHeader(std::string_view(buffer_).substr(0, JournalHeaderSize));
    if (header)
        position_ = JournalHeaderSize;
    end_ = position_;
    return header;
}

bool JournalReader::Next(JournalRecord& record) {
    for (;;) {
        if (body_.empty() && !ReadFrame())
            return false;
        const std::size_t size = body_.size();
        if (DecodeRecord(body_, record))
            return true;
        // A whole frame with an unknown record was written by another version of the console.
        damaged_ += size;
        body_ = {};
    }
}

/// Finds the next whole frame, makes it the current one, and counts the bytes before it as damaged.
bool JournalReader::ReadFrame() {
    std::uint64_t skipped = 0;
    while (Fill(JournalFrameOverhead)) {
        if (const auto size = FrameSize(std::string_view(buffer_).substr(position_)); size && Fill(*size)) {
            if (const auto body = FrameBody(std::string_view(buffer_).substr(position_, *size))) {
                body_ = *body;
                position_ += *size;
                end_ = bufferStart_ + position_;
                damaged_ += skipped;
                return true;
            }
        }
        const std::size_t next = buffer_.find(JournalMarker.front(), position_ + 1);
        const std::size_t found = std::min(next, buffer_.size());
        skipped += found - position_;
        position_ = found;
    }
    return false;
}

}  // namespace tallyhorn
