// Measures what the journal costs while messages are kept, and how fast it is read back.  The yardstick for
// writing does what `dd bs=1M conv=fdatasync` does: the same bytes in blocks of 1 MiB, then one sync.

#include "storage/Journal.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "bench/BesideYardstick.h"
#include "bench/ProcessorTime.h"
#include "platform/Heap.h"
#include "storage/JournalImage.h"
#include "storage/JournalReader.h"
#include "tests/support/FileBytes.h"
#include "tests/support/MessagesInMemory.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int TextCount = 100'000;
constexpr std::size_t TextSize = 320;
/// The rate that means "as fast as possible".
constexpr int Unpaced = 0;

const std::vector<std::string>& Texts() {
    static const std::vector<std::string> Made = [] {
        std::vector<std::string> texts;
        for (int i = 0; i < TextCount; ++i) {
            texts.push_back("Event 4625 (Logon failed): Security Log, number " + std::to_string(i));
            texts.back().resize(TextSize, static_cast<char>('a' + i % 26));
        }
        return texts;
    }();
    return Made;
}

/// What some work on all texts has cost: processor time in microseconds for each text, and its duration.
struct Cost {
    double Here = 0;  ///< of the calling thread
    double All = 0;   ///< of all threads
    double Milliseconds = 0;
};

/// Measures from its construction until Total.  The calling thread counts only while Do runs, so that waiting
/// for the next batch costs nothing.
class CostMeter {
public:
    template <typename Work>
    void Do(Work work) {
        const double before = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
        work();
        here_ += UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID) - before;
    }
    Cost Total() const {
        const double others = OtherThreads() - others_;
        const std::chrono::duration<double, std::milli> duration = SteadyClock::now() - start_;
        return {here_ * 1e6 / TextCount, (here_ + others) * 1e6 / TextCount, duration.count()};
    }

private:
    static double OtherThreads() {
        return UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
    }

    double here_ = 0;
    const double others_ = OtherThreads();
    const SteadyClock::time_point start_ = SteadyClock::now();
};

void KeepTexts(CostMeter& meter, MessageStore& store, int rate) {
    constexpr int BatchesPerSecond = 500;
    const int batch = rate == Unpaced ? TextCount : rate / BatchesPerSecond;
    const auto start = SteadyClock::now();
    for (int first = 0; first < TextCount; first += batch) {
        if (rate != Unpaced)
            std::this_thread::sleep_until(start + std::chrono::microseconds(1'000'000LL * first / rate));
        meter.Do([&] {
            for (int i = first; i < first + batch; ++i)
                store.Put(store.Grow(), Texts()[static_cast<std::size_t>(i)]);
        });
    }
}

/// Returns freed memory to the system, so that each measurement begins with the same heap.
Cost KeepWithoutJournal(int rate) {
    malloc_trim(0);
    MessagesOver<SystemClock> messages;
    CostMeter meter;
    KeepTexts(meter, messages.Received.Syslog.Messages, rate);
    return meter.Total();
}

/// Keeps the texts and waits until the disk has the journal.  Sets `failed` if that did not succeed.
Cost KeepWithJournal(const std::filesystem::path& file, int rate, bool& failed) {
    MessagesOver<SystemClock> messages;
    malloc_trim(0);
    JournalWriter writer(MakeFiles(), file);
    Journal journal(writer, messages.Received, messages.Time);
    writer.Start();
    journal.Begin(0);
    (void)writer.Flush(std::chrono::minutes(1));
    CostMeter meter;
    KeepTexts(meter, messages.Received.Syslog.Messages, rate);
    meter.Do([&] { failed = !writer.Flush(std::chrono::minutes(1)) || !journal.IsProtected(); });
    return meter.Total();
}

Cost WriteInBlocks(const std::filesystem::path& path, std::string_view bytes, bool& failed) {
    constexpr std::size_t Block = std::size_t{1} << 20U;
    CostMeter meter;
    SystemError error;
    meter.Do([&] {
        const std::unique_ptr<AppendFile> file = MakeFiles()->OpenToAppend(path, 0, error);
        failed = file == nullptr;
        for (; !failed && !bytes.empty(); bytes.remove_prefix(std::min(Block, bytes.size())))
            failed = file->Write(bytes.substr(0, Block)).has_value();
        failed = failed || file->Sync();
    });
    return meter.Total();
}

/// Returns how many messages the journal restores.
std::size_t MessagesIn(const std::filesystem::path& path) {
    SystemError error;
    const std::unique_ptr<InputFile> file = OpenInputFile(path, error);
    JournalReader reader(*file);
    JournalImage image;
    if (reader.ReadHeader()) {
        for (JournalRecord record; reader.Next(record);)
            image.Apply(record);
    }
    return image.TakeMessages().size();
}

/// Keeps the texts without and with a journal, and writes the bytes of that journal in blocks, in turn.
void Keep(benchmark::State& state) {
    const auto rate = static_cast<int>(state.range(0));
    std::vector<double> here;
    std::vector<double> all;
    std::vector<double> duration;
    std::vector<double> plain;
    std::vector<double> plainDuration;
    for (auto _ : state) {
        const TemporaryFolder folder;
        bool failed = false;
        bool plainFailed = false;
        const Cost without = KeepWithoutJournal(rate);
        const Cost with = KeepWithJournal(folder.Path() / "Journal.dat", rate, failed);
        const std::string bytes = ReadBytes(folder / "Journal.dat");
        const Cost blocks = WriteInBlocks(folder.Path() / "plain", bytes, plainFailed);
        if (failed || plainFailed || MessagesIn(folder.Path() / "Journal.dat") != TextCount)
            state.SkipWithError("the journal lacks messages");
        here.push_back(with.Here - without.Here);
        all.push_back(with.All - without.All);
        duration.push_back(with.Milliseconds);
        plain.push_back(blocks.All);
        plainDuration.push_back(blocks.Milliseconds);
        state.counters["bytes_to_text"] = static_cast<double>(bytes.size()) / (TextCount * TextSize);
    }
    state.counters["here_us"] = Median(here);
    state.counters["all_us"] = Median(all);
    state.counters["plain_us"] = Median(plain);
    state.counters["to_plain"] = Median(all) / Median(plain);
    if (rate == Unpaced) {
        state.counters["ms"] = Median(duration);
        state.counters["plain_ms"] = Median(plainDuration);
        state.counters["ms_to_plain"] = Median(duration) / Median(plainDuration);
    }
}
BENCHMARK(Keep)->ArgName("rate")->Arg(50'000)->Arg(Unpaced)->Iterations(5)->Unit(benchmark::kMillisecond);

/// Reads a journal and builds the messages that it restores.  The yardstick reads the bytes and copies the
/// texts.
void ReadBack(benchmark::State& state) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "Journal.dat";
    bool failed = false;
    (void)KeepWithJournal(path, Unpaced, failed);
    std::vector<char> buffer(std::size_t{64} << 10U);
    std::vector<double> reading;
    std::vector<double> copying;
    for (auto _ : state) {
        reading.push_back(MillisecondsOf([&] { failed = failed || MessagesIn(path) != TextCount; }));
        copying.push_back(MillisecondsOf([&] {
            SystemError error;
            const std::unique_ptr<InputFile> file = OpenInputFile(path, error);
            while (file->Read(buffer) > 0)
                benchmark::ClobberMemory();
            std::vector<std::string> texts = Texts();
            benchmark::DoNotOptimize(texts.data());
        }));
    }
    if (failed)
        state.SkipWithError("the journal lacks messages");
    state.counters["us_each"] = Median(reading) * 1e3 / TextCount;
    state.counters["to_copying"] = Median(reading) / Median(copying);
}
BENCHMARK(ReadBack)->Iterations(11)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn

int main(int argc, char** argv) {
    tallyhorn::GrowHeapInLargeSteps();  // the console does this too
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
