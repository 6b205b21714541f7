#include "platform/linux/DatagramBatch.h"

namespace tallyhorn {
namespace {

/// Returns the distance between the starts of two buffers.  If it were a multiple of the page size, the
/// starts of all buffers would compete for the same few cache sets.
std::size_t StrideFor(std::size_t length) {
    constexpr std::size_t Page = 4096;
    constexpr std::size_t Shift = 448;
    return length % Page == 0 ? length + Shift : length;
}

}  // namespace

DatagramBatch::DatagramBatch(std::size_t length, std::size_t count)
    : size_(count), bytes_(count * StrideFor(length)) {
    for (std::size_t i = 0; i < size_; ++i) {
        vectors_[i] = {.iov_base = bytes_.data() + i * StrideFor(length), .iov_len = length};
        messages_[i].msg_hdr.msg_iov = &vectors_[i];
        messages_[i].msg_hdr.msg_iovlen = 1;
    }
    texts_.reserve(size_);
}

int DatagramBatch::Receive(int socket, int flags) {
    texts_.clear();
    const int got = recvmmsg(socket, messages_.data(), static_cast<unsigned>(size_), flags, nullptr);
    for (std::size_t i = 0; i < static_cast<std::size_t>(got < 0 ? 0 : got); ++i) {
        if ((messages_[i].msg_hdr.msg_flags & MSG_TRUNC) == 0)
            texts_.emplace_back(static_cast<const char*>(vectors_[i].iov_base), messages_[i].msg_len);
    }
    return got;
}

}  // namespace tallyhorn
