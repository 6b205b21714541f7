#pragma once

// What benchmarks of datagrams share: a sender in a process and on a core of its own, and the yardstick, the
// rate that a bare receiving loop takes without a loss.

#include <netinet/in.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/ProcessorTime.h"
#include "platform/DatagramSockets.h"
#include "platform/linux/FileDescriptor.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {

inline constexpr int ReceivingCore = 0;
inline constexpr int SendingCore = 1;

/// The calling thread, and all that it starts from then on, in threads and processes.
inline void PinTo(int core) {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(static_cast<unsigned>(core), &cores);
    if (sched_setaffinity(0, sizeof cores, &cores) != 0) {
        std::fputs("benchmarks of datagrams need two cores\n", stderr);
        std::exit(1);
    }
}

/// Owns a process that sends numbered notifications in the syslog layout, " #00000001" and on at their ends,
/// to a port of this machine.  It is forked off at once, best before much memory is in use, and sends when
/// told. For one thread.
class DatagramLoad {
public:
    /// `rate` a second, evenly, or as fast as one sender can for 0.
    DatagramLoad(std::uint64_t count, std::uint64_t rate) : count_(count), rate_(rate) {
        if (pipe(orders_.data()) != 0 || pipe(answers_.data()) != 0)
            std::abort();
        sender_ = fork();
        if (sender_ == 0)
            SendAndExit();
        close(orders_[0]);
        close(answers_[1]);
    }
    ~DatagramLoad() {
        close(orders_[1]);
        close(answers_[0]);
        waitpid(sender_, nullptr, 0);
    }
    DatagramLoad(const DatagramLoad&) = delete;
    DatagramLoad& operator=(const DatagramLoad&) = delete;

    void Start(std::uint16_t port) { (void)!write(orders_[1], &port, sizeof port); }
    /// Waits until all is sent, and tells the seconds that it took; negative where sending failed.
    double Wait() {
        double seconds = -1;
        return read(answers_[0], &seconds, sizeof seconds) == sizeof seconds ? seconds : -1;
    }
    std::uint64_t Count() const { return count_; }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::size_t NumberLength = 8;

    [[noreturn]] void SendAndExit() {
        close(orders_[1]);
        std::vector<std::string> texts = MakeTexts();
        std::uint16_t port = 0;
        if (read(orders_[0], &port, sizeof port) != sizeof port)
            _exit(0);
        PinTo(SendingCore);
        const auto sender = MakeDatagramSockets()->Open("127.0.0.1", port);
        const auto start = Clock::now();
        const bool done = sender != nullptr && SendAll(*sender, texts, start);
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        (void)!write(answers_[1], &seconds, done ? sizeof seconds : 0);
        _exit(0);
    }

    static std::vector<std::string> MakeTexts() {
        DemoFeed feed(1);
        std::vector<std::string> texts(4096);
        for (std::string& text : texts)
            text = feed.NextSyslog().Text + " #" + std::string(NumberLength, '0');
        return texts;
    }

    bool SendAll(DatagramSender& sender, std::vector<std::string>& texts, Clock::time_point start) const {
        // Small, where the rate is to be even.
        const std::uint64_t batchSize = rate_ == 0 ? 64 : 8;
        std::vector<std::string_view> batch;
        for (std::uint64_t sent = 0; sent < count_; sent += batch.size()) {
            batch.clear();
            for (std::uint64_t i = sent; i < std::min(sent + batchSize, count_); ++i)
                batch.push_back(Number(texts[i % texts.size()], i + 1));
            const auto due = start + std::chrono::nanoseconds(rate_ == 0 ? 0 : sent * 1'000'000'000 / rate_);
            while (Clock::now() < due) {
                // The core is this process's own, and a sleep would be too coarse.
            }
            if (sender.SendBatch(batch) != batch.size())
                return false;
        }
        return true;
    }

    static std::string_view Number(std::string& text, std::uint64_t number) {
        for (auto digit = text.rbegin(); digit != text.rbegin() + NumberLength; ++digit, number /= 10)
            *digit = static_cast<char>('0' + number % 10);
        return text;
    }

    const std::uint64_t count_;
    const std::uint64_t rate_;
    std::array<int, 2> orders_{};
    std::array<int, 2> answers_{};
    pid_t sender_ = 0;
};

/// What a run of a receiver came to.
struct LoadResult {
    std::uint64_t Sent = 0;
    std::uint64_t Received = 0;
    double SendingSeconds = 0;
    double ProcessorSeconds = 0;  ///< the receiver's

    double Rate() const { return static_cast<double>(Sent) / SendingSeconds; }
    double NanosecondsEach() const { return ProcessorSeconds * 1e9 / static_cast<double>(Received); }
    double Lost() const { return static_cast<double>(Sent - Received); }
};

/// The yardstick: a blocking recvmmsg loop with the receive buffer of the console's and nothing behind it.
inline LoadResult BareReceive(std::uint64_t count, std::uint64_t rate) {
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
    // So that what was lost does not leave the loop waiting for ever.
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
    const double before = UsedProcessorSeconds(RUSAGE_THREAD);
    while (result.Received < count) {
        const int got = recvmmsg(socket.Get(), messages.data(), Batch, MSG_WAITFORONE, nullptr);
        if (got <= 0)
            break;
        result.Received += static_cast<std::uint64_t>(got);
    }
    result.ProcessorSeconds = UsedProcessorSeconds(RUSAGE_THREAD) - before;
    result.SendingSeconds = load.Wait();
    return result;
}

/// The highest rate, in steps of a tenth down from what one sender can, at which the yardstick loses nothing
/// in a second.
inline double LossFreeRate() {
    LoadResult result = BareReceive(500'000, 0);
    for (int step = 0; step < 20 && result.Lost() > 0; ++step) {
        const auto rate = static_cast<std::uint64_t>(result.Rate() * 0.9);
        result = BareReceive(rate, rate);
    }
    return result.Lost() > 0 ? 0 : result.Rate();
}

}  // namespace tallyhorn
