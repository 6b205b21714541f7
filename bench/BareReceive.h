#pragma once

// The benchmarks of datagrams compare their rates and processor times with those of this bare receiving loop.

#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <vector>

#include "bench/DatagramLoad.h"
#include "bench/ProcessorTime.h"
#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

/// The result of one run of a receiver.
struct LoadResult {
    std::uint64_t Sent = 0;
    std::uint64_t Received = 0;
    double SendingSeconds = 0;
    double ProcessorSeconds = 0;  ///< the time of the receiving thread or process

    double Rate() const { return static_cast<double>(Sent) / SendingSeconds; }
    double NanosecondsEach() const { return ProcessorSeconds * 1e9 / static_cast<double>(Received); }
    double Lost() const { return static_cast<double>(Sent - Received); }
};

/// Receives `count` datagrams in a blocking recvmmsg loop, with a receive buffer as large as the console's,
/// and discards them.  Returns nothing if sending failed.
inline std::optional<LoadResult> BareReceive(std::uint64_t count, std::uint64_t rate) {
    constexpr unsigned Batch = 64;
    constexpr std::size_t Length = 2048;
    std::vector<char> bytes(Batch * Length);
    std::array<iovec, Batch> vectors{};
    std::array<mmsghdr, Batch> messages{};
    for (std::size_t i = 0; i < Batch; ++i) {
        vectors[i] = {bytes.data() + i * Length, Length};
        messages[i].msg_hdr.msg_iov = &vectors[i];
        messages[i].msg_hdr.msg_iovlen = 1;
    }
    DatagramLoad load(count, rate);
    PinTo(ReceivingCore);
    const FileDescriptor socket(::socket(AF_INET6, SOCK_DGRAM, 0));
    const int off = 0;
    const int largest = 1 << 30;
    // Ends the loop if datagrams were lost.
    const timeval patience{.tv_sec = 0, .tv_usec = 500'000};
    setsockopt(socket.Get(), IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
    setsockopt(socket.Get(), SOL_SOCKET, SO_RCVBUF, &largest, sizeof largest);
    setsockopt(socket.Get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(socket.Get(), generic, size) != 0 || getsockname(socket.Get(), generic, &size) != 0)
        std::abort();

    LoadResult result{.Sent = count};
    load.Start(ntohs(address.sin6_port));
    const double before = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
    while (result.Received < count) {
        const int got = recvmmsg(socket.Get(), messages.data(), Batch, MSG_WAITFORONE, nullptr);
        if (got <= 0)
            break;
        result.Received += static_cast<std::uint64_t>(got);
    }
    result.ProcessorSeconds = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID) - before;
    const std::optional<double> seconds = load.Wait();
    if (!seconds)
        return std::nullopt;
    result.SendingSeconds = *seconds;
    return result;
}

/// Returns the highest rate, in datagrams per second, at which BareReceive loses none in one second. Starts
/// at the highest rate of one sender and lowers it by a tenth at each step; returns nothing if all 20 steps
/// lose some.
inline std::optional<double> LossFreeRate() {
    std::optional<LoadResult> result = BareReceive(500'000, 0);
    for (int step = 0; step < 20 && result && result->Lost() > 0; ++step) {
        const auto rate = static_cast<std::uint64_t>(result->Rate() * 0.9);
        result = BareReceive(rate, rate);
    }
    if (!result || result->Lost() > 0)
        return std::nullopt;
    return result->Rate();
}

}  // namespace tallyhorn
