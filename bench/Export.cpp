// Exports messages to a text file.  For comparison, the same bytes are written with the same buffer, with the
// same wait for the disk.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench/BesideYardstick.h"
#include "platform/BufferedWriter.h"
#include "platform/Heap.h"
#include "records/SyslogFormat.h"
#include "storage/MessageExport.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FileBytes.h"
#include "tests/support/MessagesInMemory.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {
namespace {

/// The messages of a console without a window.
struct Filled : MessagesOver<SystemClock> {
    explicit Filled(int count) {
        GrowHeapInLargeSteps();  // the console does this too
        Dialog.Answer = Folder.Path() / "export.txt";
        DemoFeed feed(1);
        for (int i = 0; i < count; ++i) {
            ParseSyslogText(feed.NextSyslog().Text, false, {}, Alarm);
            KeepSyslog(Alarm);
            KeepNetBios(feed.Next().Text, false);
        }
    }

    TemporaryFolder Folder;
    FakeSaveDialog Dialog;
    MessageExport Export{{Context, Dialog}, Folder.Path(), {}};
};

void WriteAlone(const std::filesystem::path& path, const std::string& bytes) {
    SystemError error;
    const auto file = CreateReplacementFile(path, error);
    BufferedWriter writer(*file);
    constexpr std::size_t Piece = 300;
    for (std::size_t i = 0; i < bytes.size(); i += Piece)
        writer.Write(std::string_view(bytes).substr(i, Piece));
    writer.Finish();
}

void SelectLargestBranch(ConsolidatedTree& tree) {
    TreeNode largest;
    for (std::size_t i = 0; i < tree.ChildCount(TreeNode()); ++i) {
        const TreeNode alarm = tree.ChildAt(TreeNode(), i);
        if (largest.IsRoot() || tree.Count(alarm) > tree.Count(largest))
            largest = alarm;
    }
    tree.SelectNode(largest);
}

/// The arguments are the page and the number of messages.  `ratio` is the median time of the exports divided
/// by that of WriteAlone.
void ExportBesideBareWriting(benchmark::State& state) {
    Filled filled(static_cast<int>(state.range(1)));
    filled.Display.Page = static_cast<MessagePage>(state.range(0));
    SelectLargestBranch(filled.Received.Tree);
    const double first = MillisecondsOf([&] { filled.Export.ExportMessages(filled.Display.Page); });
    const std::string bytes = ReadBytes(*filled.Dialog.Answer);
    std::vector<double> exports;
    std::vector<double> bare;
    for (auto _ : state) {
        bare.push_back(MillisecondsOf([&] { WriteAlone(filled.Folder.Path() / "bare", bytes); }));
        exports.push_back(MillisecondsOf([&] { filled.Export.ExportMessages(filled.Display.Page); }));
    }
    const auto lines = std::count(bytes.begin(), bytes.end(), '\n') - 1;
    if (lines < 1 || filled.Boxes.Shown.size() != exports.size() + 1)
        state.SkipWithError("an export failed");
    state.counters["first_ms"] = first;
    state.counters["export_ms"] = Median(exports);
    state.counters["bare_ms"] = Median(bare);
    state.counters["ratio"] = Median(exports) / Median(bare);
    state.counters["lines"] = static_cast<double>(lines);
    state.counters["ns_a_line_more"] = (Median(exports) - Median(bare)) * 1e6 / static_cast<double>(lines);
}
BENCHMARK(ExportBesideBareWriting)
    ->ArgsProduct({{0, 1, 2}, {100'000}})
    ->Iterations(11)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ExportBesideBareWriting)->Args({1, 1'000'000})->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn
