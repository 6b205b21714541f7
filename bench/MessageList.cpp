// Adds and deletes rows in lists of 10,000 and of 1,000,000 rows, and measures the memory that a message
// takes.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <chrono>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/TimeSlices.h"
#include "records/NetBiosFormat.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeDisplay.h"
#include "tests/support/FakePendingEvents.h"
#include "tools/DemoFeed.h"
#include "views/messages/ReceivedMessages.h"

namespace tallyhorn {
namespace {

constexpr std::size_t TextCount = 4096;
constexpr int AddedRows = 5000;

/// Realistic records, parsed in advance.
const std::vector<AlarmRecord>& Alarms() {
    static const std::vector<AlarmRecord> Parsed = [] {
        DemoFeed feed(1);
        std::vector<AlarmRecord> made(TextCount);
        for (AlarmRecord& alarm : made)
            ParseCurrentAlarm(feed.Next().Text, alarm);
        return made;
    }();
    return Parsed;
}

/// A list of `size` rows with dates and alarms in random order.
struct FilledList {
    explicit FilledList(int size, std::optional<MessageColumn> sortedBy) {
        for (int i = 0; i < size; ++i)
            Add();
        if (sortedBy)
            List.SortBy(*sortedBy);
    }
    void Add() {
        AlarmRecord& alarm = Scratch[Random() % Scratch.size()];
        alarm.DateTime.Seconds += static_cast<std::int64_t>(Random() % 100'000);
        Rows.Add(Next, alarm, EventType::Error);
        List.Add(Next++);
    }

    std::mt19937 Random{3};
    std::vector<AlarmRecord> Scratch = Alarms();
    MessageRows Rows;
    MessageList List{Rows};
    Slot Next = 0;
};

/// Adds rows one by one to a sorted list and reports the time per row.
void AddSorted(benchmark::State& state, MessageColumn column) {
    const auto list = std::make_unique<FilledList>(static_cast<int>(state.range(0)), column);
    for (auto _ : state)
        list->Add();
}
BENCHMARK_CAPTURE(AddSorted, ByDate, MessageColumn::DateLogged)
    ->Arg(10'000)
    ->Arg(1'000'000)
    ->Iterations(AddedRows);
BENCHMARK_CAPTURE(AddSorted, ByAlarm, MessageColumn::Alarm)
    ->Arg(10'000)
    ->Arg(1'000'000)
    ->Iterations(AddedRows);

/// Deletes one row in twenty, spread over the list, and reports the time per deleted row.
void DeleteScattered(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        auto list = std::make_unique<FilledList>(static_cast<int>(size), MessageColumn::DateLogged);
        for (std::size_t i = list->Random() % 20; i < size; i += 1 + list->Random() % 39)
            list->List.Select(i, i, true);
        const auto selected = static_cast<double>(list->List.SelectedCount());
        const auto start = std::chrono::steady_clock::now();
        list->Rows.Remove(list->List.RemoveSelected());
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(time.count() / selected);
    }
}
BENCHMARK(DeleteScattered)->Arg(10'000)->Iterations(50)->UseManualTime();
BENCHMARK(DeleteScattered)->Arg(1'000'000)->Iterations(3)->UseManualTime();

/// Reports the heap bytes per message, without the bytes of its text, for 200,000 messages.
void BytesHeld(benchmark::State& state, std::optional<MessageColumn> sortedBy) {
    constexpr int Kept = 200'000;
    for (auto _ : state) {
        FakeClock clock;
        FakePendingEvents events;
        FakeDisplay display;
        TimeSlices slices(clock, events);
        DemoFeed feed(2);
        AlarmRecord alarm;
        const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        ReceivedMessages received(display, slices);
        if (sortedBy) {
            for (MessageList& list : received.NetBios.Lists)
                list.SortBy(*sortedBy);
        }
        std::size_t textBytes = 0;
        for (int i = 0; i < Kept; ++i) {
            const std::string text = feed.Next().Text;
            ParseCurrentAlarm(text, alarm);
            received.KeepNetBiosMessage(std::string(text), alarm, true);
            textBytes += text.size();
        }
        const std::size_t held = mallinfo2().uordblks + mallinfo2().hblkhd - before;
        state.counters["text"] = static_cast<double>(textBytes) / Kept;
        state.counters["beyond_text"] = static_cast<double>(held - textBytes) / Kept;
    }
}
BENCHMARK_CAPTURE(BytesHeld, Unsorted, std::nullopt)->Iterations(1);
BENCHMARK_CAPTURE(BytesHeld, SortedByDate, MessageColumn::DateLogged)->Iterations(1);

}  // namespace
}  // namespace tallyhorn
