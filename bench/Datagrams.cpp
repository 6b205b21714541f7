// Receives UDP datagrams from another process and counts them: the highest rate without a loss, and the
// processor time per datagram (all threads, kernel time included).  Sender and receiver run on different
// cores.  A bare receiving loop over the same datagrams is measured for comparison.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <semaphore>

#include "bench/BareReceive.h"
#include "bench/DatagramLoad.h"
#include "platform/DatagramSockets.h"

namespace tallyhorn {
namespace {

/// The argument that means "as fast as possible".
constexpr std::int64_t Unpaced = 0;
constexpr std::uint64_t Seconds = 2;

std::uint64_t CountFor(std::int64_t rate) {
    return rate == Unpaced ? 1'000'000 : static_cast<std::uint64_t>(rate) * Seconds;
}

constexpr const char* SendingFailed = "sending failed";

void Report(benchmark::State& state, const std::optional<LoadResult>& result) {
    if (!result) {
        state.SkipWithError(SendingFailed);
        return;
    }
    state.SetIterationTime(result->SendingSeconds);
    state.counters["a_second"] = result->Rate();
    state.counters["ns_each"] = result->NanosecondsEach();
    state.counters["lost"] = result->Lost();
}

void ReportLosses(benchmark::State& state, const DatagramLosses& losses) {
    state.counters["no_room"] = static_cast<double>(losses.NoRoom);
    state.counters["by_system"] = static_cast<double>(losses.BySystem.value_or(0));
}

void BareLoop(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state)
        Report(state, BareReceive(CountFor(state.range(0)), static_cast<std::uint64_t>(state.range(0))));
}

void LossFree(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        const std::optional<double> rate = LossFreeRate();
        if (!rate)
            state.SkipWithError("every rate loses datagrams");
        state.SetIterationTime(1);
        state.counters["a_second"] = rate.value_or(0);
    }
}

/// Measures a reader that sleeps until the receiver wakes it, like the console's user-interface thread.
void Receiver(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        LoadResult result{.Sent = CountFor(state.range(0))};
        DatagramLoad load(result.Sent, static_cast<std::uint64_t>(state.range(0)));
        PinTo(ReceivingCore);
        std::counting_semaphore<> woken(0);
        std::uint64_t wakes = 0;
        const std::unique_ptr<DatagramReceiver> receiver =
            MakeDatagramSockets()->Listen(0, [&woken] { woken.release(); });
        const double before = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
        load.Start(receiver->Port());
        while (result.Received < result.Sent && woken.try_acquire_for(std::chrono::milliseconds(500))) {
            ++wakes;
            while (const std::optional<std::string_view> text = receiver->Next()) {
                benchmark::DoNotOptimize(text->data());
                ++result.Received;
            }
        }
        result.ProcessorSeconds = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before;
        const std::optional<double> seconds = load.Wait();
        result.SendingSeconds = seconds.value_or(0);
        Report(state, seconds ? std::optional(result) : std::nullopt);
        ReportLosses(state, receiver->Losses());
        state.counters["wakes"] = static_cast<double>(wakes);
    }
}

/// Measures a reader that keeps the receiver's core busy and takes the waiting datagrams only once per
/// second. Losses then mean that the pump thread did not get the core in time.
void BusyReader(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    for ([[maybe_unused]] auto _ : state) {
        LoadResult result{.Sent = CountFor(state.range(0))};
        DatagramLoad load(result.Sent, static_cast<std::uint64_t>(state.range(0)));
        PinTo(ReceivingCore);
        const std::unique_ptr<DatagramReceiver> receiver = MakeDatagramSockets()->Listen(0, [] {});
        load.Start(receiver->Port());
        for (std::uint64_t second = 0; second <= Seconds; ++second) {
            const auto end = Clock::now() + std::chrono::seconds(1);
            while (Clock::now() < end) {
            }
            while (receiver->Next())
                ++result.Received;
        }
        const std::optional<double> seconds = load.Wait();
        if (!seconds)
            state.SkipWithError(SendingFailed);
        state.SetIterationTime(seconds.value_or(0));
        state.counters["lost"] = result.Lost();
        ReportLosses(state, receiver->Losses());
    }
}

void Once(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}
void AtEachRate(benchmark::internal::Benchmark* benchmark) {
    Once(benchmark->Arg(Unpaced)->Arg(500'000)->Arg(200'000)->Arg(50'000));
}
BENCHMARK(LossFree)->Apply(Once);
BENCHMARK(BareLoop)->Apply(AtEachRate);
BENCHMARK(Receiver)->Apply(AtEachRate);
BENCHMARK(BusyReader)->Arg(150'000)->Arg(50'000)->Apply(Once);

}  // namespace
}  // namespace tallyhorn

int main(int argc, char** argv) {
    if (!tallyhorn::HasBothCores())
        return 0;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
