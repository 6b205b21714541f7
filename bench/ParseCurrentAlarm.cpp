// Parses a NetBIOS notification.  For comparison, does the least that any parser must do: copies the text and
// searches it for ten bytes.

#include <benchmark/benchmark.h>

#include <string>

#include "bench/CopyAndSearch.h"
#include "records/NetBiosFormat.h"

namespace tallyhorn {
namespace {

/// Returns a typical notification, with two lines of description.
std::string TypicalText() {
    std::string text =
        "Date: 08/21/2008 14:05:09\r\nEngine: LON-MON-1\r\nRule: 17\r\nAlarm: (Logon failed)\r\n"
        "Severity: high\r\n----------\r\nLog Type: Security\r\nSource: "
        "Microsoft-Windows-Security-Auditing\r\n"
        "Type Of Event: Failure Audit\r\nCategory: Logon/Logoff\r\nEventID: 4625\r\n"
        "Account: acme\\svc-orders\r\nComputer: lon-dc-1\r\nDescription: An account failed to log on.\r\n";
    text.append(380 - text.size(), 'x');
    return text;
}

BENCHMARK_CAPTURE(CopyAndSearch, TypicalText, TypicalText());

void ParseTypicalText(benchmark::State& state) {
    const std::string text = TypicalText();
    AlarmRecord alarm;
    for (auto _ : state) {
        ParseCurrentAlarm(text, alarm);
        benchmark::DoNotOptimize(alarm);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ParseTypicalText);

}  // namespace
}  // namespace tallyhorn
