// Parses a syslog notification, makes the text that the console keeps of it, and reads that text back.  For
// comparison, does the least that any parser must do: copies the text and searches it for ten bytes.

#include <benchmark/benchmark.h>

#include <string>

#include "bench/CopyAndSearch.h"
#include "records/CanonicalText.h"
#include "records/SyslogFormat.h"

namespace tallyhorn {
namespace {

/// Returns a typical notification of 300 bytes.
std::string TypicalText() {
    std::string text =
        "<131>Aug 21 14:05:09 lon-mon-1 tallyhorn: Event 4625 (Logon failed): Security Log, "
        "08/21/2008 2:05:09 PM, Microsoft-Windows-Security-Auditing, Failure Audit, Logon/Logoff, 4625, "
        "acme\\svc-orders, lon-dc-1, An account failed to log on. ";
    text.append(300 - text.size(), 'x');
    return text;
}

BENCHMARK_CAPTURE(CopyAndSearch, TypicalText, TypicalText());

void ParseTypicalText(benchmark::State& state) {
    const std::string text = TypicalText();
    AlarmRecord alarm;
    for (auto _ : state) {
        ParseSyslogText(text, false, AlarmDate{}, alarm);
        benchmark::DoNotOptimize(alarm);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ParseTypicalText);

void RecogniseTypicalText(benchmark::State& state) {
    const std::string text = TypicalText();
    for (auto _ : state)
        benchmark::DoNotOptimize(IsAlarmNotification(text));
}
BENCHMARK(RecogniseTypicalText);

void SettleTypicalMessage(benchmark::State& state) {
    AlarmRecord alarm;
    ParseSyslogText(TypicalText(), false, AlarmDate{}, alarm);
    for (auto _ : state)
        benchmark::DoNotOptimize(SettleMessage(alarm));
}
BENCHMARK(SettleTypicalMessage);

void ReadTypicalMessage(benchmark::State& state) {
    AlarmRecord alarm;
    ParseSyslogText(TypicalText(), false, AlarmDate{}, alarm);
    const std::string text = SettleMessage(alarm);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ReadMessageText(text, alarm));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ReadTypicalMessage);

}  // namespace
}  // namespace tallyhorn
