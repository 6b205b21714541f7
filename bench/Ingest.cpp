// Sends storms of syslog datagrams to a whole console with its window; sender and console run on different
// cores. The results are compared with a bare receiving loop's highest rate without a loss and its processor
// time per datagram, measured in the same run, because the speed of a shared machine varies.  If DISPLAY is
// set (e.g. by xvfb-run), the window is drawn there, else on Qt's "offscreen" platform.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QApplication>
#include <QTabWidget>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "bench/BareReceive.h"
#include "bench/BesideYardstick.h"
#include "bench/ConsoleUnderLoad.h"
#include "bench/DatagramLoad.h"
#include "bench/ProcessorTime.h"
#include "platform/Heap.h"
#include "tests/support/FileBytes.h"
#include "views/forms/frmServer.h"

namespace tallyhorn {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// Returns the value.  Ends the program if there is none, because the ratios mean nothing without it.
template <typename Value>
Value OrRefuse(const std::optional<Value>& value, const char* what) {
    if (value)
        return *value;
    std::fprintf(stderr, "the machine is too busy to measure %s\n", what);
    std::fflush(nullptr);
    // Not exit(), which would wait for the window to close.
    std::_Exit(1);
}

double YardstickRate() {
    static const double Rate = OrRefuse(LossFreeRate(), "a rate without losses");
    return Rate;
}

double BareLoopNanoseconds() {
    static const LoadResult Bare = OrRefuse(BareReceive(100'000, 50'000), "a bare loop");
    return Bare.NanosecondsEach();
}

/// Forwards to the system's sockets and remembers the receiver that the console listens with.
class WatchedSockets final : public DatagramSockets {
public:
    std::unique_ptr<DatagramReceiver> Listen(std::int32_t port, std::function<void()> wake) override {
        auto receiver = sockets_->Listen(port, std::move(wake));
        Receiver = receiver.get();
        return receiver;
    }
    std::unique_ptr<DatagramSender> Open(const std::string& host, std::int32_t port) override {
        return sockets_->Open(host, port);
    }

    DatagramReceiver* Receiver = nullptr;

private:
    std::unique_ptr<DatagramSockets> sockets_ = MakeDatagramSockets();
};

constexpr const char* SendingFailed = "sending failed";
constexpr const char* Missing = "datagrams are missing that were not counted as dropped";

/// Owns one console and the sender of one storm.
class Storm {
public:
    Storm(std::uint64_t count, std::uint64_t rate, int page) : load_(Forked(count, rate)) {
        PinTo(ReceivingCore);
        console_.Window().findChild<QTabWidget*>(QStringLiteral("tabMessageTypes"))->setCurrentIndex(page);
        (void)ConsoleUnderLoad::WorkUntil([] { return true; });
    }

    void Start() {
        before_ = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
        beforeHere_ = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
        start_ = SteadyClock::now();
        load_.Start(Port());
    }
    /// Waits until every datagram is either shown or counted as dropped.
    void Finish() {
        finished_ = WorkUntilAccounted(load_.Count());
        seconds_ = Elapsed();
        used_ = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before_;
        usedHere_ = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID) - beforeHere_;
        sent_ = HasSent();
    }
    /// Returns false if datagrams are missing that neither the receiver nor the system counts as dropped.
    [[nodiscard]] bool WorkUntilAccounted(std::uint64_t count) const {
        return ConsoleUnderLoad::WorkUntil([&] { return Received() + Dropped() >= count; }) &&
               Received() + Dropped() == count;
    }
    std::uint16_t Port() const { return sockets_.Receiver->Port(); }
    double Elapsed() const { return std::chrono::duration<double>(SteadyClock::now() - start_).count(); }
    std::uint64_t Received() const { return static_cast<std::uint64_t>(console_.Rows()); }
    /// Returns how many datagrams the receiver or the system dropped.
    std::uint64_t Dropped() const {
        const DatagramLosses losses = sockets_.Receiver->Losses();
        return losses.NoRoom + losses.BySystem.value_or(0);
    }
    /// Waits for the sender.  Returns false if sending failed.
    [[nodiscard]] bool HasSent() {
        sendingSeconds_ = load_.Wait();
        return sendingSeconds_.has_value();
    }
    double SendingRate() const { return static_cast<double>(load_.Count()) / sendingSeconds_.value_or(0); }
    double ProcessorMicroseconds() const { return used_ * 1e6 / static_cast<double>(Received()); }
    MessageStore& Messages() { return console_.SyslogMessages(); }
    /// Ends the console.  Returns the bytes of the backup file that it saved, or an empty string if it does
    /// not end.
    std::string Save() { return console_.End() ? ReadBytes(folder_ / "Backup.dat") : std::string(); }

    void Report(benchmark::State& state) const {
        state.SetIterationTime(seconds_);
        state.counters["sent_per_s"] = SendingRate();
        state.counters["lost"] = static_cast<double>(load_.Count() - Received());
        state.counters["cpu_us_each"] = ProcessorMicroseconds();
        state.counters["window_us_each"] = usedHere_ * 1e6 / static_cast<double>(Received());
        if (!sent_)
            state.SkipWithError(SendingFailed);
        else if (!finished_)
            state.SkipWithError(Missing);
    }

private:
    /// Returns freed memory to the system before the fork: pages shared with the sender would have to be
    /// copied when the console writes to them.
    static DatagramLoad Forked(std::uint64_t count, std::uint64_t rate) {
        malloc_trim(0);
        return {count, rate};
    }

    DatagramLoad load_;
    TemporaryFolder folder_;
    WatchedSockets sockets_;
    ConsoleUnderLoad console_{folder_, sockets_};
    SteadyClock::time_point start_;
    double before_ = 0;
    double beforeHere_ = 0;
    double seconds_ = 0;
    double used_ = 0;
    double usedHere_ = 0;
    std::optional<double> sendingSeconds_;
    bool sent_ = false;
    bool finished_ = false;
};

/// Sends at a percentage of the highest rate at which the bare receiving loop loses nothing.
void AtAShareOfTheYardstick(benchmark::State& state) {
    for (auto _ : state) {
        const auto rate =
            static_cast<std::uint64_t>(YardstickRate() * static_cast<double>(state.range(0)) / 100);
        Storm storm(rate * 3, rate, static_cast<int>(state.range(1)));
        storm.Start();
        storm.Finish();
        storm.Report(state);
        state.counters["to_yardstick"] = storm.SendingRate() / YardstickRate();
    }
}
BENCHMARK(AtAShareOfTheYardstick)
    ->ArgNames({"percent", "page"})
    ->Args({20, 1})
    ->Args({20, 2})
    ->Args({25, 1})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

void At50000ASecond(benchmark::State& state) {
    for (auto _ : state) {
        const double bare = BareLoopNanoseconds() / 1000;
        Storm storm(250'000, 50'000, static_cast<int>(state.range(0)));
        storm.Start();
        storm.Finish();
        storm.Report(state);
        state.counters["cpu_to_bare_loop"] = storm.ProcessorMicroseconds() / bare;
    }
}
BENCHMARK(At50000ASecond)
    ->ArgName("page")
    ->Arg(0)
    ->Arg(1)
    ->Arg(2)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// The processor time in microseconds for each datagram during a part of a storm.
struct Share {
    double All = 0;
    double Window = 0;  ///< of the user-interface thread
};

Share ShareOf(const Storm& storm, std::chrono::milliseconds part) {
    const auto end = SteadyClock::now() + part;
    const std::uint64_t before = storm.Received();
    const double all = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
    const double window = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
    (void)ConsoleUnderLoad::WorkUntil([end] { return SteadyClock::now() > end; });
    const auto received = static_cast<double>(storm.Received() - before);
    return {(UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - all) * 1e6 / received,
            (UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID) - window) * 1e6 / received};
}

/// Detaches the journal from the messages in every second part of a storm, because two storms differ by more
/// than the journal costs.  The messages are on a hidden page, because the time for painting varies too.
void JournalAt50000ASecond(benchmark::State& state) {
    constexpr std::chrono::milliseconds Part(200);
    constexpr std::chrono::milliseconds WriterIsDone(50);
    constexpr int Pairs = 18;
    for (auto _ : state) {
        Storm storm(500'000, 50'000, 0);
        storm.Start();
        (void)ShareOf(storm, Part);
        std::vector<double> without;
        std::vector<double> all;
        std::vector<double> window;
        for (int pair = 0; pair < Pairs; ++pair) {
            StoreObserver* const journal = storm.Messages().SetObserver(nullptr);
            (void)ShareOf(storm, WriterIsDone);
            const Share off = ShareOf(storm, Part);
            storm.Messages().SetObserver(journal);
            (void)ShareOf(storm, WriterIsDone);
            const Share on = ShareOf(storm, Part);
            without.push_back(off.All);
            all.push_back(on.All - off.All);
            window.push_back(on.Window - off.Window);
        }
        storm.Finish();
        storm.Report(state);
        state.counters["journal_us_each"] = Median(all);
        state.counters["journal_window_us_each"] = Median(window);
        state.counters["to_without"] = 1 + Median(all) / Median(without);
    }
}
BENCHMARK(JournalAt50000ASecond)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

/// Blocks the user-interface thread for one second in the middle of the storm.
void AStallOfASecond(benchmark::State& state) {
    constexpr std::uint64_t Rate = 50'000;
    for (auto _ : state) {
        Storm storm(Rate * 4, Rate, 1);
        storm.Start();
        (void)ConsoleUnderLoad::WorkUntil([&] { return storm.Elapsed() > 1; });
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const auto stalled = SteadyClock::now();
        const bool caughtUp = ConsoleUnderLoad::WorkUntil([&] {
            // True once the console shows all but the last 0.1 s of what was sent.
            return static_cast<double>(storm.Received()) > (storm.Elapsed() - 0.1) * Rate;
        });
        if (!caughtUp)
            state.SkipWithError("the window does not catch up");
        state.counters["caught_up_s"] = std::chrono::duration<double>(SteadyClock::now() - stalled).count();
        storm.Finish();
        storm.Report(state);
    }
}
BENCHMARK(AStallOfASecond)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

/// Sends two bursts, the second while the window is busy with the first.  No datagram may be lost.
void TwoBurstsOf20000(benchmark::State& state) {
    constexpr std::uint64_t Burst = 20'000;
    constexpr std::uint64_t Both = 2 * Burst;
    for (auto _ : state) {
        Storm storm(Burst, 0, 1);
        DatagramLoad second(Burst, 0);
        storm.Start();
        const bool begun = ConsoleUnderLoad::WorkUntil([&] { return storm.Received() > 0; });
        second.Start(storm.Port());
        const bool accounted = storm.WorkUntilAccounted(Both);
        state.SetIterationTime(storm.Elapsed());
        state.counters["lost"] = static_cast<double>(Both - storm.Received());
        if (!storm.HasSent() || !second.Wait())
            state.SkipWithError(SendingFailed);
        else if (!begun || !accounted)
            state.SkipWithError(Missing);
        else if (storm.Received() < Both)
            state.SkipWithError("datagrams were lost although the bursts fit into the queue");
    }
}
BENCHMARK(TwoBurstsOf20000)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

/// Sends as fast as one sender can.  Whatever the system delivers must be in the backup, in the order of
/// sending.
void Unpaced200000(benchmark::State& state) {
    for (auto _ : state) {
        Storm storm(200'000, 0, static_cast<int>(state.range(0)));
        storm.Start();
        storm.Finish();
        storm.Report(state);
        const std::uint64_t received = storm.Received();
        const std::string backup = storm.Save();
        std::uint64_t last = 0;
        std::uint64_t saved = 0;
        for (std::size_t at = backup.find(" #"); at != std::string::npos; at = backup.find(" #", at + 1)) {
            // The sender's numbers have eight digits; the five digits of the next text's length may follow.
            if (std::min(backup.find_first_not_of("0123456789", at + 2), backup.size()) - at < 10)
                continue;
            const std::uint64_t number = std::stoull(backup.substr(at + 2, 8));
            if (number <= last)
                state.SkipWithError("the order is lost");
            last = number;
            ++saved;
        }
        state.counters["saved"] = static_cast<double>(saved);
        if (saved != received)
            state.SkipWithError("the backup lacks messages");
    }
}
BENCHMARK(Unpaced200000)
    ->ArgName("page")
    ->Arg(1)
    ->Arg(2)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn

int main(int argc, char** argv) {
    if (!tallyhorn::HasBothCores())
        return 0;
    tallyhorn::GrowHeapInLargeSteps();  // the console does this too
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::AddCustomContext("screen", QApplication::platformName().toStdString());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
