// Loads messages from the backup file into the store, the lists and the tree.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "platform/Heap.h"
#include "storage/MessageBackup.h"
#include "tests/support/ReceptionInMemory.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {
namespace {

constexpr int Messages = 100'000;

void ShowNoProgress(std::uint64_t /*done*/, std::uint64_t /*total*/) {}
void IgnoreHash(std::uint64_t /*hash*/) {}
bool GoOn() {
    return true;
}

/// All parts of a console except its window.
struct Rules : ReceptionOver<SystemClock> {
    explicit Rules(const TemporaryFolder& folder)
        : Backup(folder.Path() / "Backup.dat", Received.Syslog.Messages, Boxes, Slices, *Files, Time) {}

    const std::unique_ptr<tallyhorn::Files> Files = MakeFiles();
    MessageBackup Backup;
};

void IntoListsAndTree(benchmark::State& state) {
    GrowHeapInLargeSteps();  // the console does this too
    const TemporaryFolder folder;
    {
        Rules rules(folder);
        rules.Backup.LoadMessageBackup([](std::string_view /*text*/) {}, ShowNoProgress, GoOn);
        DemoFeed feed(1);
        for (int i = 0; i < Messages; ++i)
            rules.ArriveDatagram(feed.NextSyslog().Text);
        rules.Syslog.Close();
        rules.Backup.SaveMessageBackup(IgnoreHash);
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto rules = std::make_unique<Rules>(folder);
        state.ResumeTiming();
        rules->Backup.LoadMessageBackup(
            [&rules](std::string_view text) {
                rules->Received.RestoreBackupMessage(text, AlarmDate{rules->Time.LocalSeconds()},
                                                     rules->Alarm);
            },
            ShowNoProgress, GoOn);
        state.PauseTiming();
        if (rules->Received.Syslog.Messages.MessageCount() != Messages)
            state.SkipWithError("messages are missing");
        rules.reset();
        state.ResumeTiming();
    }
    state.counters["us_each"] = benchmark::Counter(
        Messages / 1e6, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(IntoListsAndTree)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn
