#pragma once

#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace tallyhorn {

/// Owns the buffers and headers of one recvmmsg call, set up once.
/// For one thread.
class DatagramBatch {
public:
    static constexpr std::size_t MostDatagrams = 64;

    /// For `count` datagrams (MostDatagrams at most) of up to `length` bytes.
    explicit DatagramBatch(std::size_t length, std::size_t count = MostDatagrams);
    DatagramBatch(const DatagramBatch&) = delete;
    DatagramBatch& operator=(const DatagramBatch&) = delete;

    /// One call with these flags.  Tells how many datagrams it took, those that are too long included; -1,
    /// and the reason in errno, where it failed.
    int Receive(int socket, int flags);
    /// What it took, without those that are too long; valid until the next call.
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
