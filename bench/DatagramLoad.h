#pragma once

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DatagramSockets.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {

inline constexpr int ReceivingCore = 0;
inline constexpr int SendingCore = 1;

/// Returns whether this process may use both cores, and prints a note if not.  Call it before PinTo.
inline bool HasBothCores() {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    const bool both = sched_getaffinity(0, sizeof cores, &cores) == 0 && CPU_ISSET(ReceivingCore, &cores) &&
                      CPU_ISSET(SendingCore, &cores);
    if (!both)
        std::fputs("skipped: datagrams are measured with sender and receiver on different cores\n", stderr);
    return both;
}

/// Restricts the calling thread, and every thread and process that it starts later, to one core.
inline void PinTo(int core) {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(static_cast<unsigned>(core), &cores);
    if (sched_setaffinity(0, sizeof cores, &cores) != 0) {
        std::fprintf(stderr, "cannot run on core %d\n", core);
        std::exit(1);
    }
}

/// Owns a process that sends notifications by syslog to a UDP port on this machine.  Each notification ends
/// with its number; that of the first is " #00000001".  The constructor forks the process and should run
/// before much memory is in use. Start makes it send.  Not thread-safe.
class DatagramLoad {
public:
    /// Sends `rate` datagrams per second, evenly spaced; 0 means as fast as possible.
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
    /// Waits until all datagrams are sent and returns the seconds that sending took, or nothing if it failed.
    std::optional<double> Wait() {
        double seconds = 0;
        if (read(answers_[0], &seconds, sizeof seconds) != sizeof seconds)
            return std::nullopt;
        return seconds;
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
        // At a given rate, small batches spread the datagrams evenly.
        const std::uint64_t batchSize = rate_ == 0 ? 64 : 8;
        std::vector<std::string_view> batch;
        for (std::uint64_t sent = 0; sent < count_; sent += batch.size()) {
            batch.clear();
            for (std::uint64_t i = sent; i < std::min(sent + batchSize, count_); ++i)
                batch.push_back(Number(texts[i % texts.size()], i + 1));
            const auto due = start + std::chrono::nanoseconds(rate_ == 0 ? 0 : sent * 1'000'000'000 / rate_);
            while (Clock::now() < due) {
                // Spins, because a sleep is too coarse; nothing else needs the core.
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

}  // namespace tallyhorn
