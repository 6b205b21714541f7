#pragma once

#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace tallyhorn {

/// Owns the buffers and headers for calls of recvmmsg.  For one thread.
class DatagramBatch {
public:
    static constexpr std::size_t MostDatagrams = 64;

    /// Prepares for `count` datagrams (at most MostDatagrams) of up to `length` bytes.
    explicit DatagramBatch(std::size_t length, std::size_t count = MostDatagrams);
    DatagramBatch(const DatagramBatch&) = delete;
    DatagramBatch& operator=(const DatagramBatch&) = delete;

    /// Calls recvmmsg.  Returns the number of datagrams that it received, including those that were too long,
    /// or -1 with the error in errno.
    int Receive(int socket, int flags);
    /// Returns the datagrams that the last call of Receive received, without those that were too long.  They
    /// are valid until the next call of Receive.
    std::span<const std::string_view> Texts() const { return texts_; }
    std::size_t Size() const { return size_; }

private:
    const std::size_t size_;
    std::vector<char> bytes_;
    std::array<iovec, MostDatagrams> vectors_{};
    std::array<mmsghdr, MostDatagrams> messages_{};
    std::vector<std::string_view> texts_;
};

}  // namespace tallyhorn
