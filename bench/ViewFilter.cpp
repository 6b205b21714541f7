// Applies a view filter to 1,000,000 messages, removes it, and tests an arrival against it.  For comparison,
// does the same work without lists and tree.

#include "filters/ViewFilter.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/Heap.h"
#include "records/SyslogFormat.h"
#include "tests/support/MessagesInMemory.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {
namespace {

constexpr int Messages = 1'000'000;
constexpr std::size_t ByLog = 1;
constexpr std::size_t ByComputer = 3;

/// A channel with 1,000,000 realistic messages, and its view filter.
struct Full : MessagesOver<SystemClock> {
    explicit Full(MessagePage page) {
        GrowHeapInLargeSteps();  // the console does this too
        Display.Page = page;
        DemoFeed feed(1);
        for (int i = 0; i < Messages; ++i) {
            if (page == MessagePage::NetBios) {
                KeepNetBios(feed.Next().Text);
            } else {
                ParseSyslogText(feed.NextSyslog().Text, false, AlarmDate(), Alarm);
                KeepSyslog(Alarm);
            }
        }
    }
    MessageChannel& Channel() {
        return Display.Page == MessagePage::NetBios ? Received.NetBios : Received.Syslog;
    }
    std::size_t Rows() { return RowCount(Channel()); }

    ViewFilter Filter{Context};
};

/// Returns criteria that only messages with the last of the column's values meet.
ViewFilter::Criteria Choose(const ViewFilter& filter, std::size_t column) {
    ViewFilter::Criteria criteria;
    const ViewFilter::Values values = filter.ValuesOnShow();
    criteria.at(column) = values.at(column).back();
    return criteria;
}

void PutOn(benchmark::State& state, MessagePage page, std::size_t column) {
    const auto full = std::make_unique<Full>(page);
    const ViewFilter::Criteria criteria = Choose(full->Filter, column);
    for (auto _ : state) {
        full->Filter.Apply(criteria);
        state.PauseTiming();
        state.counters["staying"] = static_cast<double>(full->Rows());
        full->Filter.RemoveViewFilter();
        state.ResumeTiming();
    }
}

void TakeOff(benchmark::State& state, MessagePage page) {
    const auto full = std::make_unique<Full>(page);
    const ViewFilter::Criteria criteria = Choose(full->Filter, ByLog);
    for (auto _ : state) {
        state.PauseTiming();
        full->Filter.Apply(criteria);
        state.ResumeTiming();
        full->Filter.RemoveViewFilter();
        if (full->Rows() != Messages)
            state.SkipWithError("rows are missing");
    }
}

/// For comparison with TakeOff: reads all texts and does nothing with them.
void ReadAll(benchmark::State& state, MessagePage page) {
    const auto full = std::make_unique<Full>(page);
    const MessageStore& messages = full->Channel().Messages;
    for (auto _ : state) {
        for (Slot slot = 0; slot <= messages.UpperBound(); ++slot) {
            if (page == MessagePage::NetBios)
                ParseCurrentAlarm(messages.Text(slot), full->Alarm);
            else
                ReadStoredText(messages.Text(slot), false, AlarmDate(), full->Alarm);
        }
        benchmark::DoNotOptimize(full->Alarm);
    }
}

/// For comparison with PutOn: erases from an array of plain rows those with another text in `column`.
void EraseOthers(benchmark::State& state, MessagePage page, std::size_t column) {
    const auto full = std::make_unique<Full>(page);
    const std::string wanted = Choose(full->Filter, column).at(column).value();
    const MessageRows& rows = full->Channel().Rows;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::array<std::string, ViewFilter::CriterionCount>> texts;
        for (Slot slot = 0; slot < rows.SlotBound(); ++slot) {
            if (!rows.Holds(slot))
                continue;
            texts.emplace_back();
            for (std::size_t i = 0; i < texts.back().size(); ++i)
                texts.back().at(i) = rows.Texts().Text(rows[slot].Texts.at(i));
        }
        state.ResumeTiming();
        std::erase_if(texts, [&](const auto& row) { return row[column] != wanted; });
        benchmark::DoNotOptimize(texts.data());
    }
}

/// Collects the values that the dialog offers when it opens.
void CollectValues(benchmark::State& state) {
    const auto full = std::make_unique<Full>(MessagePage::Syslog);
    for (auto _ : state)
        benchmark::DoNotOptimize(full->Filter.ValuesOnShow());
}

/// Tests two arrivals in turn: one passes all four criteria, the other differs only in the last character of
/// its computer.
void TestArrival(benchmark::State& state) {
    MessagesOver<SystemClock> none;
    ViewFilter filter(none.Context);
    filter.Apply({"Failed logon", "Security", "LONDON\\ADMINISTRATOR", "LON-SQL-PROD-01"});
    std::array<AlarmRecord, 2> arrivals;
    for (AlarmRecord& arrival : arrivals) {
        arrival.AlarmName = "Failed logon";
        arrival.LogType = "Security";
        arrival.AccountName = "LONDON\\ADMINISTRATOR";
        arrival.Computer = "LON-SQL-PROD-01";
    }
    arrivals.back().Computer = "LON-SQL-PROD-02";
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(filter.PassesViewFilter(arrivals.at(next)));
        next = 1 - next;
    }
}

BENCHMARK_CAPTURE(PutOn, NetBiosByLog, MessagePage::NetBios, ByLog)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PutOn, SyslogByLog, MessagePage::Syslog, ByLog)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PutOn, NetBiosByComputer, MessagePage::NetBios, ByComputer)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PutOn, SyslogByComputer, MessagePage::Syslog, ByComputer)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(EraseOthers, NetBiosByLog, MessagePage::NetBios, ByLog)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(EraseOthers, SyslogByLog, MessagePage::Syslog, ByLog)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(TakeOff, NetBios, MessagePage::NetBios)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(TakeOff, Syslog, MessagePage::Syslog)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadAll, NetBios, MessagePage::NetBios)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadAll, Syslog, MessagePage::Syslog)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TestArrival);

}  // namespace
}  // namespace tallyhorn
