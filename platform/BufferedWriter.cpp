#include "platform/BufferedWriter.h"

namespace tallyhorn {

BufferedWriter::BufferedWriter(OutputFile& file) : file_(file) {
    buffer_.reserve(BufferSize);
}

bool BufferedWriter::Write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > BufferSize && !Flush())
        return false;
    if (bytes.size() > BufferSize)
        return WriteThrough(bytes);
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    return !failure_;
}

std::optional<SystemError> BufferedWriter::Finish() {
    Flush();
    const std::optional<SystemError> atEnd = file_.Finish();
    return failure_ ? failure_ : atEnd;
}

bool BufferedWriter::WriteThrough(std::string_view bytes) {
    if (!failure_)
        failure_ = file_.Write(bytes);
    return !failure_;
}

bool BufferedWriter::Flush() {
    const bool written = WriteThrough({buffer_.data(), buffer_.size()});
    buffer_.clear();
    return written;
}

}  // namespace tallyhorn
