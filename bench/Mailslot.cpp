// Receives texts that another process writes into a mailslot, and measures the processor time of the pump
// thread, the queue and ReadMessages together (all threads of this process, kernel time included).  For
// comparison, a bare loop receives the same datagrams: its time is what the system alone costs.

#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "bench/ProcessorTime.h"
#include "platform/Clock.h"
#include "reception/cvbMailslot.h"
#include "tests/support/FakeMailslots.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

constexpr int Texts = 200'000;
constexpr std::size_t TextLength = 380;

/// Runs `send` in a child process.
template <typename Function>
pid_t StartSender(Function send) {
    const pid_t child = fork();
    if (child == 0) {
        send();
        _exit(0);
    }
    return child;
}

/// Reports processor time instead of elapsed time, because each iteration waits for a child process.
void ReportPerText(benchmark::State& state, double seconds) {
    state.SetIterationTime(seconds);
    state.counters["ns_per_text"] =
        benchmark::Counter(seconds * 1e9 / Texts, benchmark::Counter::kAvgThreads);
}

void PumpQueueAndReadMessages(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        TestMailslot slot;
        SystemClock clock;
        cvbMailslot mailslot(*slot.Transport, clock);
        mailslot.InitializeMailslot(slot.Name, true);
        const pid_t sender = StartSender([&] {
            const auto client = slot.Transport->Open(slot.Path);
            const std::string text = std::string(TextLength, 'x') + '\0';
            for (int i = 0; i < Texts; ++i)
                client->Write(text);
        });
        std::vector<std::string> messages;
        const double before = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
        for (int received = 0; received < Texts;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(state.range(0)));
            received += mailslot.ReadMessages(messages);
        }
        ReportPerText(state, UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before);
        waitpid(sender, nullptr, 0);
    }
}
BENCHMARK(PumpQueueAndReadMessages)->Arg(10)->Arg(500)->UseManualTime()->Unit(benchmark::kMillisecond);

void BareReceive(benchmark::State& state) {
    constexpr unsigned Batch = 64;
    std::array<std::array<char, 401>, Batch> bytes{};
    std::array<iovec, Batch> vectors{};
    std::array<mmsghdr, Batch> headers{};
    for (std::size_t i = 0; i < Batch; ++i) {
        vectors[i] = {bytes[i].data(), bytes[i].size()};
        headers[i].msg_hdr.msg_iov = &vectors[i];
        headers[i].msg_hdr.msg_iovlen = 1;
    }
    for ([[maybe_unused]] auto _ : state) {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_DGRAM, 0, ends.data()) != 0)
            std::abort();
        const pid_t sender = StartSender([&] {
            const std::string text = std::string(TextLength, 'x') + '\0';
            for (int i = 0; i < Texts; ++i)
                send(ends[1], text.data(), text.size(), 0);
        });
        const double before = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
        for (int received = 0; received < Texts;)
            received += recvmmsg(ends[0], headers.data(), Batch, MSG_WAITFORONE, nullptr);
        ReportPerText(state, UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before);
        waitpid(sender, nullptr, 0);
        close(ends[0]);
        close(ends[1]);
    }
}
BENCHMARK(BareReceive)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Measures ReadMessages alone, over mailslots in memory.
void ReadMessagesAlone(benchmark::State& state) {
    constexpr std::size_t Waiting = 32'000;
    FakeMailslots mailslots;
    SystemClock clock;
    cvbMailslot mailslot(mailslots, clock);
    mailslot.InitializeMailslot("Bench", true);
    std::vector<std::string> messages;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        mailslots.ByName["Bench"].Waiting.assign(Waiting, std::string(TextLength, 'x') + '\0');
        state.ResumeTiming();
        mailslot.ReadMessages(messages);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Waiting));
}
BENCHMARK(ReadMessagesAlone)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn
