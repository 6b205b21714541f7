// Adds and removes leaves in a tree of 1,000,000 leaves and, for comparison, in one of 10,000.

#include "views/messages/ConsolidatedTree.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace tallyhorn {
namespace {

constexpr std::size_t Alarms = 200;
constexpr std::size_t Computers = 5000;
constexpr Slot FewLeaves = 10'000;
constexpr Slot ManyLeaves = 1'000'000;

/// A tree in which each computer raises only one kind of alarm, of one event type, so that each computer has
/// exactly one group.
struct LeafyTree {
    explicit LeafyTree(Slot leaves) {
        for (Slot slot = 0; slot < leaves; ++slot)
            Add(slot);
    }
    void Add(Slot slot) {
        MakeRow(slot);
        Tree.AddMessageToConsolidatedTree(slot, Record);
    }
    void MakeRow(Slot slot) {
        // Spreads the leaves over all computers from the start, so that the small tree has as many groups as
        // the large one.
        const std::size_t computer = static_cast<std::size_t>(slot) * 1237 % Computers;
        Record.AlarmName = "Alarm number " + std::to_string(computer % Alarms);
        Record.Computer = "LON-SRV-" + std::to_string(computer);
        Record.EventID = static_cast<std::int32_t>(computer % 50);
        Record.DateTime.Seconds = 1'600'000'000 + slot;
        Rows.Add(slot, Record, static_cast<EventType>(computer % KnownTypeCount));
    }

    std::mt19937 Random{1};
    AlarmRecord Record = [] {
        AlarmRecord record;
        record.LogType = "System";
        record.Source = "Service Control Manager";
        record.AccountName = "ADMINISTRATOR";
        return record;
    }();
    MessageRows Rows;
    ConsolidatedTree Tree{Rows};
};

/// Adds leaves, `together` at a time.  Does not measure making their rows, which the lists need too.
void AddLeaves(benchmark::State& state, Slot leaves, Slot together) {
    constexpr Slot Added = 10'000;
    const auto tree = std::make_unique<LeafyTree>(leaves);
    std::vector<Slot> slots(Added);
    std::iota(slots.begin(), slots.end(), leaves);
    std::vector<AlarmRecord> records;
    for (auto _ : state) {
        state.PauseTiming();
        records.clear();
        for (const Slot slot : slots) {
            tree->MakeRow(slot);
            records.push_back(tree->Record);
        }
        state.ResumeTiming();
        for (Slot i = 0; i < Added; ++i) {
            if (together == 1) {
                tree->Tree.AddMessageToConsolidatedTree(leaves + i, records[static_cast<std::size_t>(i)]);
                continue;
            }
            tree->Tree.NoteMessage(leaves + i, records[static_cast<std::size_t>(i)]);
            if (i % together == together - 1 || i == Added - 1)
                tree->Tree.AddNoted();
        }
        state.PauseTiming();
        tree->Tree.RemoveLeaves(slots);
        tree->Rows.Remove(slots);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * Added);
}

/// Removes `removed` leaves at random positions in one call.
void RemoveLeaves(benchmark::State& state, Slot leaves, std::size_t removed) {
    const auto tree = std::make_unique<LeafyTree>(leaves);
    std::vector<Slot> slots(static_cast<std::size_t>(leaves));
    std::iota(slots.begin(), slots.end(), 0);
    for (auto _ : state) {
        state.PauseTiming();
        std::shuffle(slots.begin(), slots.end(), tree->Random);
        const std::span<const Slot> gone = std::span(slots).first(removed);
        state.ResumeTiming();
        tree->Tree.RemoveLeaves(gone);
        state.PauseTiming();
        tree->Rows.Remove(gone);
        for (const Slot slot : gone)
            tree->Add(slot);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(removed));
}

BENCHMARK_CAPTURE(AddLeaves, to_10000, FewLeaves, 1);
BENCHMARK_CAPTURE(AddLeaves, to_1000000, ManyLeaves, 1);
BENCHMARK_CAPTURE(AddLeaves, to_10000_in_groups, FewLeaves, 64);
BENCHMARK_CAPTURE(AddLeaves, to_1000000_in_groups, ManyLeaves, 64);
BENCHMARK_CAPTURE(RemoveLeaves, 5000_of_10000, FewLeaves, 5000);
BENCHMARK_CAPTURE(RemoveLeaves, 50000_of_1000000, ManyLeaves, 50'000);

}  // namespace
}  // namespace tallyhorn
