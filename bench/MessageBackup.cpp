// Saves 100,000 texts to the backup file and reads them back.  Saving is compared with copying the same file
// with `cp` and `sync`, because a save, too, waits for an fsync.

#include "storage/MessageBackup.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bench/BesideYardstick.h"
#include "storage/BackupReader.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FakePendingEvents.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

constexpr int TextCount = 100'000;
constexpr std::size_t TextSize = 400;

void ShowNoProgress(std::uint64_t /*done*/, std::uint64_t /*total*/) {}
void IgnoreHash(std::uint64_t /*hash*/) {}
bool GoOn() {
    return true;
}

/// A full store and its backup file, in a temporary folder.
struct FilledBackup {
    FilledBackup() {
        for (int i = 0; i < TextCount; ++i) {
            std::string text = "Date: 6/15/2004 10:30:15 AM\r\nAlarm: number " + std::to_string(i) + "\r\n";
            text.resize(TextSize, static_cast<char>('a' + i % 26));
            Messages.Put(Messages.Grow(), std::move(text));
        }
        WriteBytes(File, "");  // a save fails if there is no file to replace
        Backup.SaveMessageBackup(IgnoreHash);
    }

    TemporaryFolder Folder;
    const std::string File = Folder / "Backup.dat";
    FakeClock Time;
    const std::unique_ptr<tallyhorn::Files> Files = MakeFiles();
    FakePendingEvents Events;
    FakeMessageBoxes Boxes;
    TimeSlices Slices{Time, Events};
    MessageStore Messages{0};
    MessageBackup Backup{File, Messages, Boxes, Slices, *Files, Time};
};

/// Copies and saves in turn; each replaces the file that it wrote before.  `ratio` is the median time of the
/// saves divided by that of the copies.
void SaveBesideCopy(benchmark::State& state) {
    FilledBackup filled;
    const std::string copy = filled.Folder / "copy";
    const std::string command = "cp '" + filled.File + "' '" + copy + "' && sync '" + copy + "'";
    std::vector<double> saves;
    std::vector<double> copies;
    for (auto _ : state) {
        int status = 0;
        copies.push_back(MillisecondsOf([&] { status = std::system(command.c_str()); }));
        saves.push_back(MillisecondsOf([&] { filled.Backup.SaveMessageBackup(IgnoreHash); }));
        if (status != 0 || !filled.Boxes.Shown.empty())
            state.SkipWithError("a copy or a save failed");
    }
    state.counters["save_ms"] = Median(saves);
    state.counters["copy_ms"] = Median(copies);
    state.counters["ratio"] = Median(saves) / Median(copies);
}
BENCHMARK(SaveBesideCopy)->Iterations(21)->Unit(benchmark::kMillisecond);

/// Loads the texts as the console does, but does not use them.
void Load(benchmark::State& state) {
    FilledBackup filled;
    std::size_t bytes = 0;
    for (auto _ : state)
        filled.Backup.LoadMessageBackup([&bytes](std::string_view text) { bytes += text.size(); },
                                        ShowNoProgress, GoOn);
    if (bytes != static_cast<std::size_t>(state.iterations()) * TextCount * TextSize)
        state.SkipWithError("texts are missing");
    state.SetItemsProcessed(state.iterations() * TextCount);
}
BENCHMARK(Load)->Unit(benchmark::kMillisecond);

/// Reads all texts in one pass over the file.  For comparison, `ReadAlone` reads the bytes only.
void ReadTexts(benchmark::State& state) {
    FilledBackup filled;
    SystemError error;
    const auto file = OpenInputFile(filled.File, error);
    for (auto _ : state) {
        file->Rewind();
        BackupReader reader(*file);
        std::string_view text;
        int texts = 0;
        while (reader.Next(text) == BackupReader::Step::Text)
            ++texts;
        if (texts != TextCount)
            state.SkipWithError("texts are missing");
    }
    state.SetItemsProcessed(state.iterations() * TextCount);
}
BENCHMARK(ReadTexts)->Unit(benchmark::kMillisecond);

void ReadAlone(benchmark::State& state) {
    FilledBackup filled;
    SystemError error;
    const auto file = OpenInputFile(filled.File, error);
    std::vector<char> buffer(std::size_t{256} << 10U);
    for (auto _ : state) {
        file->Rewind();
        while (file->Read(buffer) > 0)
            benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * TextCount);
}
BENCHMARK(ReadAlone)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn
