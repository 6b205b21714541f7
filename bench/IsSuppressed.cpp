// Tests a notification against 100 suppression filters, none of which matches.  For comparison, a loop makes
// the same tests on precomputed integers.

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "filters/SuppressionFilters.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

constexpr std::size_t FilterTotal = 100;
constexpr std::size_t AlarmTotal = 1024;

constexpr std::array<const char*, 12> Sources = {"Service Control Manager",
                                                 "EventLog",
                                                 "DCOM",
                                                 "Application Popup",
                                                 "MSSQLSERVER",
                                                 "W32Time",
                                                 "Netlogon",
                                                 "Print",
                                                 "Microsoft-Windows-GroupPolicy",
                                                 "Security",
                                                 "Application Error",
                                                 "Disk"};
constexpr std::array<const char*, 6> Categories = {"None", "Logon/Logoff",      "Object Access",
                                                   "(1)",  "Detailed Tracking", "Policy Change"};
constexpr std::array<const char*, 6> Accounts = {"NT AUTHORITY\\SYSTEM", "N/A",
                                                 "CORP\\ADMINISTRATOR",  "CORP\\BACKUP",
                                                 "CORP\\JSMITH",         "NT AUTHORITY\\NETWORK SERVICE"};
constexpr std::array<const char*, 5> Types = {"Information", "Warning", "Error", "Failure Audit",
                                              "Success Audit"};

std::size_t Roll(std::mt19937& random, std::size_t below) {
    return random() % below;
}

/// A filter of the comparison: numbers stand for the texts, and a field that is 0 is not compared.
struct ReadyTests {
    std::int64_t Begin = 0, End = 0;
    std::int32_t EventID = AnyEventID;
    std::uint32_t Source = 0, Category = 0, AccountName = 0, Computer = 0, Types = 0;
    bool UseDateRange = false;
};

struct ReadyAlarm {
    std::int64_t Second = 0;
    std::int32_t EventID = 0;
    std::uint32_t Source = 0, Category = 0, AccountName = 0, Computer = 0, Type = 0;
};

bool ReadyMatch(const ReadyTests& tests, const ReadyAlarm& alarm) {
    if (tests.UseDateRange && (alarm.Second < tests.Begin || alarm.Second > tests.End))
        return false;
    if (tests.Source != 0 && tests.Source != alarm.Source)
        return false;
    if (tests.Category != 0 && tests.Category != alarm.Category)
        return false;
    if (tests.AccountName != 0 && tests.AccountName != alarm.AccountName)
        return false;
    if (tests.Computer != 0 && tests.Computer != alarm.Computer)
        return false;
    if (tests.EventID != AnyEventID && tests.EventID != alarm.EventID)
        return false;
    return tests.Types == 0 || (tests.Types & alarm.Type) != 0;
}

/// The notifications and the filters, each as texts and as precomputed numbers.
struct Scene {
    Scene();
    void AddFilter(std::mt19937& random);
    void AddAlarm(std::mt19937& random);

    TemporaryFolder Folder;
    SuppressionFilters Filters;
    std::vector<ReadyTests> ReadyFilters;
    std::vector<AlarmRecord> Alarms;
    std::vector<ReadyAlarm> ReadyAlarms;
};

std::string ComputerName(std::size_t number) {
    return (number % 3 == 0 ? "DC" : "SRV-APP-") + std::to_string(number);
}

constexpr std::size_t ComputerTotal = 40;
constexpr std::int64_t FeedStart = 1'750'000'000;
/// Larger than every ID in the notifications, so that no filter matches.
constexpr std::int32_t FirstFilterID = 100'000;

/// Most filters are like those of the suppress command (event ID, source and type).  Some also test an
/// account, a computer or a category.  A few test only a computer or a range of dates that does not occur in
/// the notifications.
void Scene::AddFilter(std::mt19937& random) {
    SuppressionFilter& filter = Filters.CurrentFilter;
    filter = SuppressionFilter();
    ReadyTests ready;
    const std::size_t kind = Roll(random, 10);
    filter.FilterName = "filter " + std::to_string(ReadyFilters.size());
    filter.EventID = AnyEventID;
    if (kind < 7) {
        ready.EventID = filter.EventID = FirstFilterID + static_cast<std::int32_t>(Roll(random, 5000));
        const std::size_t source = Roll(random, Sources.size());
        filter.Source = Sources[source];
        ready.Source = static_cast<std::uint32_t>(source + 1);
        const std::size_t type = Roll(random, Types.size());
        ready.Types = 1U << type;
        filter.EventTypes = 1 << type;
    }
    if (kind >= 5 && kind < 7) {
        const std::size_t account = Roll(random, Accounts.size());
        filter.AccountName = Accounts[account];
        ready.AccountName = static_cast<std::uint32_t>(account + 1);
        const std::size_t category = Roll(random, Categories.size());
        filter.Category = Categories[category];
        ready.Category = static_cast<std::uint32_t>(category + 1);
    }
    if (kind >= 6 && kind < 9) {
        const std::size_t computer = ComputerTotal + Roll(random, ComputerTotal);
        filter.Computer = ComputerName(computer);
        ready.Computer = static_cast<std::uint32_t>(computer + 1);
    }
    if (kind == 9 || kind == 4) {
        ready.UseDateRange = true;
        ready.Begin = FeedStart - 86400 * static_cast<std::int64_t>(10 + Roll(random, 100));
        ready.End = ready.Begin + 86400;
        filter.UseDateRange = FilterTrue;
        filter.BeginDate = DaysFromAlarmDate({ready.Begin});
        filter.EndDate = DaysFromAlarmDate({ready.End});
    }
    ReadyFilters.push_back(ready);
    Filters.WriteFilterRecord(static_cast<std::int32_t>(ReadyFilters.size()));
}

void Scene::AddAlarm(std::mt19937& random) {
    const std::size_t source = Roll(random, Sources.size());
    const std::size_t category = Roll(random, Categories.size());
    const std::size_t account = Roll(random, Accounts.size());
    const std::size_t computer = Roll(random, ComputerTotal);
    const std::size_t type = Roll(random, Types.size());
    AlarmRecord alarm;
    alarm.DateTime.Seconds = FeedStart + static_cast<std::int64_t>(Alarms.size());
    alarm.Source = Sources[source];
    alarm.TypeOfEvent = Types[type];
    alarm.Category = Categories[category];
    alarm.AccountName = Accounts[account];
    alarm.Computer = ComputerName(computer);
    alarm.EventID = static_cast<std::int32_t>(Roll(random, 10'000));
    ReadyAlarms.push_back({alarm.DateTime.Seconds, alarm.EventID, static_cast<std::uint32_t>(source + 1),
                           static_cast<std::uint32_t>(category + 1), static_cast<std::uint32_t>(account + 1),
                           static_cast<std::uint32_t>(computer + 1), 1U << type});
    Alarms.push_back(std::move(alarm));
}

Scene::Scene() : Filters(Folder / "SavedFilters.dat") {
    std::mt19937 random(1);
    Filters.OpenFilterFile();
    while (ReadyFilters.size() < FilterTotal)
        AddFilter(random);
    while (Alarms.size() < AlarmTotal)
        AddAlarm(random);
    Filters.LoadSuppressionFilters();
    Filters.CloseFilterFile();
}

const Scene& TheScene() {
    static const Scene Made;
    return Made;
}

void IsSuppressed(benchmark::State& state) {
    const Scene& scene = TheScene();
    if (scene.Filters.FilterCount != FilterTotal)
        state.SkipWithError("the filters were not loaded");
    std::size_t next = 0;
    std::size_t suppressed = 0;
    const auto alarms = static_cast<std::size_t>(state.range(0));
    while (state.KeepRunning()) {
        suppressed += scene.Filters.IsSuppressed(scene.Alarms[next]) ? 1 : 0;
        next = next + 1 == alarms ? 0 : next + 1;
    }
    if (suppressed != 0)
        state.SkipWithError("a filter matched");
}
BENCHMARK(IsSuppressed)->Arg(1)->Arg(AlarmTotal);

void ReadyIntegers(benchmark::State& state) {
    const Scene& scene = TheScene();
    std::size_t next = 0;
    std::size_t suppressed = 0;
    const auto alarms = static_cast<std::size_t>(state.range(0));
    while (state.KeepRunning()) {
        for (const ReadyTests& filter : scene.ReadyFilters) {
            if (ReadyMatch(filter, scene.ReadyAlarms[next])) {
                ++suppressed;
                break;
            }
        }
        next = next + 1 == alarms ? 0 : next + 1;
    }
    if (suppressed != 0)
        state.SkipWithError("a filter matched");
}
BENCHMARK(ReadyIntegers)->Arg(1)->Arg(AlarmTotal);

}  // namespace
}  // namespace tallyhorn
