#include "tools/DemoFeed.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "records/DateDisplay.h"

namespace tallyhorn {
namespace {

using Texts = std::string_view;

/// A kind of event that a monitored machine logs.
struct Kind {
    DemoType Type;
    Texts Alarm;
    Texts LogType;
    Texts Source;
    Texts Category;
    std::int32_t EventID;
    Texts Description;
};

constexpr std::array<Kind, 24> Kinds = {{
    {DemoType::Information, "Service started", "System", "Service Control Manager", "None", 7036,
     "The Print Spooler service entered the running state."},
    {DemoType::Information, "Backup finished", "Application", "BackupAgent", "Job", 1074,
     "The nightly backup of volume D: ended normally."},
    {DemoType::Information, "Time synchronised", "System", "W32Time", "None", 35,
     "The time service is now in step with its source."},
    {DemoType::Information, "Update installed", "System", "Update Client", "Installation", 19,
     "Installation successful: the monthly quality update was put in place."},
    {DemoType::Information, "Database mounted", "Application", "MailStore", "Transport", 9523,
     "The mailbox database was mounted without replaying logs."},
    {DemoType::Warning, "Disk space low", "System", "Srv", "None", 2013,
     "The C: disk is at or near capacity.  You may need to delete some files."},
    {DemoType::Warning, "Name resolution slow", "System", "Dns Client", "None", 1014,
     "Name resolution timed out after none of the configured servers answered."},
    {DemoType::Warning, "Certificate expires soon", "Application", "CertWatch", "Renewal", 64,
     "The certificate for the web listener will expire within thirty days."},
    {DemoType::Warning, "Paper tray empty", "System", "Print", "Printing", 20,
     "Printer FLOOR-2 reports that tray 1 has run out of paper."},
    {DemoType::Warning, "Link lost (one of two)", "System", "NetTeam", "Link", 27,
     "Adapter 2 of the team is disconnected; traffic goes on by adapter 1."},
    {DemoType::Error, "Service stopped", "System", "Service Control Manager", "None", 7031,
     "The Order Gateway service terminated unexpectedly.  It has done this 3 time(s)."},
    {DemoType::Error, "Disk fault", "System", "Disk", "None", 7,
     "The device has a bad block and the operation was retried without success."},
    {DemoType::Error, "Database unreachable", "Application", "OrderGateway", "Connection", 17052,
     "Login to the orders database failed: the server was not found or is not accessible."},
    {DemoType::Error, "Program fault", "Application", "Application Error", "(100)", 1000,
     "Faulting application, version 4.2.0.17, faulting module unknown, fault address 0x0001f3a2."},
    {DemoType::Error, "Replication failed", "Directory Service", "Replication", "Replication", 1311,
     "The consistency check found that not all sites can be reached."},
    {DemoType::FailureAudit, "Logon failed", "Security", "Security", "Logon/Logoff", 529,
     "Logon Failure:\r\n\tReason: Unknown user name or bad password\r\n\tLogon Type: 3"},
    {DemoType::FailureAudit, "Account locked", "Security", "Security", "Account Management", 644,
     "User Account Locked Out:\r\n\tCaller: the domain controller of the first site"},
    {DemoType::FailureAudit, "Object access denied", "Security", "Security", "Object Access", 560,
     "Object Open:\r\n\tObject Server: Security\r\n\tObject Type: File\r\n\tAccesses: WRITE_DAC"},
    {DemoType::FailureAudit, "Ticket refused", "Security", "Security", "Account Logon", 676,
     "Authentication Ticket Request Failed:\r\n\tFailure Code: 0x18"},
    {DemoType::SuccessAudit, "Logon", "Security", "Security", "Logon/Logoff", 528,
     "Successful Logon:\r\n\tLogon Type: 10\r\n\tAuthentication Package: Negotiate"},
    {DemoType::SuccessAudit, "Logoff", "Security", "Security", "Logon/Logoff", 538,
     "User Logoff:\r\n\tLogon Type: 3"},
    {DemoType::SuccessAudit, "Privilege used", "Security", "Security", "Privilege Use", 576,
     "Special privileges assigned to new logon:\r\n\tPrivileges: SeBackupPrivilege"},
    {DemoType::SuccessAudit, "Group changed", "Security", "Security", "Account Management", 636,
     "Security Enabled Local Group Member Added:\r\n\tTarget: Administrators"},
    {DemoType::SuccessAudit, "Policy changed", "Security", "Security", "Policy Change", 612,
     "Audit Policy Change:\r\n\tNew Policy: success and failure of logons"},
}};

/// The number of events of each type among a hundred, in the order of DemoType.
constexpr std::array<std::size_t, 5> Weights = {45, 20, 12, 9, 14};

constexpr std::array<Texts, 8> Roles = {"DC", "FILE", "PRINT", "SQL", "WEB", "MAIL", "APP", "WS"};
constexpr std::array<Texts, 4> Sites = {"LON", "NYC", "SYD", "BER"};
constexpr std::size_t MachinesPerRole = 3;

constexpr std::array<Texts, 14> Accounts = {
    "N/A",           "SYSTEM",     "NETWORK SERVICE",  "ACME\\jharper",  "j.ng",
    "ACME\\mdoe",    "backup_svc", "ACME\\svc-orders", "guest",          "krbtgt",
    "Administrator", "o'brien",    "r.silva",          "ANONYMOUS LOGON"};

constexpr std::array<Texts, 12> Sentences = {"This event was raised by the monitored machine itself.",
                                             "No further action was taken.",
                                             "The operation will be tried again in 5 minutes.",
                                             "See the vendor's knowledge base for what to do next.",
                                             "Data: 0000: 34 01 00 c0 00 00 00 00",
                                             "The previous occurrence was less than an hour before.",
                                             "Caller process: 1184.",
                                             "Source network address: 10.20.30.40, port 49733.",
                                             "The last known good state is kept.",
                                             "If this goes on, tell the administrator.",
                                             "Workstation name: FRONTDESK.",
                                             "Ring buffer at 87% of its size."};

/// Values that careless code mishandles: accents and quotes of all kinds, markup, format specifiers, blanks,
/// tabs, control characters, parentheses, separators, bytes that are not characters, and an empty text.
constexpr std::array<Texts, 16> OddValues = {"Z\xFCrich \xC9tage \xD1 \xDF \xFF",
                                             "\x93quoted\x94 \x91single\x92 \"straight\" 'ticks'",
                                             "<b>bold</b> &amp; &lt;script&gt; <br/>",
                                             "100%s %d %n %1 %% %",
                                             "tab\there\tand\tthere",
                                             "bell\x07 escape\x1B[31m delete\x7F unit\x1F",
                                             "  blanks at both ends  ",
                                             "((nested) (twice",
                                             "a:b: c; d|e, f=g",
                                             "\x80 euro \x99 trade \x85 dots",
                                             "\x81\x8D\x8F\x90\x9D",
                                             "*1-0-2-not a part",
                                             "C:\\Temp\\new\\r\\n",
                                             "\xA0no-break\xA0\xAD",
                                             "=1+1,\"csv\",",
                                             ""};

constexpr std::array<Texts, 4> OddTypes = {"", "Critical", "   ", "Verbose <debug>"};

std::string DateText(AlarmDate date) {
    const CivilDateTime parts = SplitAlarmDate(date);
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%02d/%02d/%04d %02d:%02d:%02d", parts.Month,
                                     parts.Day, parts.Year, parts.Hour, parts.Minute, parts.Second);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string Compose(const AlarmRecord& record) {
    return "Date: " + DateText(record.DateTime) +
           "\r\nEngine: TALLYHORN\r\nPriority: normal\r\nAlarm raised (" + record.AlarmName +
           ")\r\n\r\nEvent:\r\nLog Type: " + record.LogType + "\r\nSource: " + record.Source +
           "\r\nType: " + record.TypeOfEvent + "\r\nCategory: " + record.Category +
           "\r\nEventID: " + std::to_string(record.EventID) + "\r\nAccount: " + record.AccountName +
           "\r\nComputer: " + record.Computer + "\r\nDescription: " + record.Description;
}

/// The syslog priority (facility local0 and a severity) for each DemoType.
constexpr std::array<int, 6> SyslogPriorities = {134, 132, 131, 133, 133, 133};

std::string SyslogHeader(AlarmDate date, DemoType type) {
    const CivilDateTime parts = SplitAlarmDate(date);
    std::array<char, 80> text{};
    const int length = std::snprintf(
        text.data(), text.size(),
        "<%d>%s %2d %02d:%02d:%02d TALLYHORN tallyhorn: ", SyslogPriorities[static_cast<std::size_t>(type)],
        ShortMonthName(parts.Month), parts.Day, parts.Hour, parts.Minute, parts.Second);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string TwelveHourDateText(AlarmDate date) {
    const CivilDateTime parts = SplitAlarmDate(date);
    std::array<char, 80> text{};
    const int length = std::snprintf(text.data(), text.size(), "%d/%d/%04d %d:%02d:%02d %s", parts.Month,
                                     parts.Day, parts.Year, HourOfTwelve(parts.Hour), parts.Minute,
                                     parts.Second, parts.Hour < 12 ? "AM" : "PM");
    return {text.data(), static_cast<std::size_t>(length)};
}

/// Returns the field with semicolons instead of commas, because a comma ends a field in the syslog format.
std::string WithoutCommas(std::string field) {
    std::replace(field.begin(), field.end(), ',', ';');
    return field;
}

void JoinLines(std::string& text) {
    std::erase(text, '\r');
    std::replace(text.begin(), text.end(), '\n', ' ');
}

std::string ComposeSyslog(const AlarmRecord& record, DemoType type) {
    return SyslogHeader(record.DateTime, type) + "Alarm raised (" + record.AlarmName +
           ") Event logged: " + WithoutCommas(record.LogType) + " Log, " +
           TwelveHourDateText(record.DateTime) + ", " + WithoutCommas(record.Source) + ", " +
           WithoutCommas(record.TypeOfEvent) + ", " + WithoutCommas(record.Category) + ", " +
           std::to_string(record.EventID) + ", " + WithoutCommas(record.AccountName) + ", " +
           WithoutCommas(record.Computer) + ", " + record.Description;
}

}  // namespace

DemoFeed::DemoFeed(std::uint64_t seed)
    : random_(seed), now_(MakeAlarmDate({.Year = 2026, .Month = 1, .Day = 5, .Hour = 8}).value()) {}

DemoText DemoFeed::Next() {
    const Event event = NextEvent();
    const std::size_t target = NextLength();
    std::string text = Compose(event.Record);
    if (text.size() < target)
        text += Prose(target - text.size());
    if (target <= LongestUnsplit && text.size() > LongestUnsplit)
        text.resize(LongestUnsplit);
    return {std::move(text), event.Type};
}

DemoText DemoFeed::NextSyslog() {
    Event event = NextEvent();
    // A syslog datagram normally has no line ends; an odd one may contain any characters.
    if (!event.Odd)
        JoinLines(event.Record.Description);
    const std::size_t target = NextLength();
    std::string text = ComposeSyslog(event.Record, event.Type);
    if (text.size() < target) {
        std::string prose = Prose(target - text.size());
        JoinLines(prose);
        text += prose;
    }
    return {std::move(text), event.Type};
}

DemoFeed::Event DemoFeed::NextEvent() {
    constexpr std::size_t EventsPerOddOne = 16;
    std::size_t draw = Below(100);
    std::size_t typeIndex = 0;
    while (draw >= Weights[typeIndex])
        draw -= Weights[typeIndex++];
    Event event{.Record = {}, .Type = static_cast<DemoType>(typeIndex)};
    now_.Seconds += static_cast<std::int64_t>(Below(4));
    event.Record = LifelikeRecord(event.Type);
    event.Odd = Below(EventsPerOddOne) == 0;
    if (event.Odd)
        MakeOdd(event.Record, event.Type);
    return event;
}

std::size_t DemoFeed::NextLength() {
    return Below(TextsPerLongOne) == 0 ? 450 + Below(1000) : 300 + Below(LongestUnsplit - 300 + 1);
}

/// Returns a random number below `limit`.  Does not use the distributions of the standard library, because
/// their results depend on the compiler.
std::size_t DemoFeed::Below(std::size_t limit) {
    return static_cast<std::size_t>(random_() % limit);
}

AlarmRecord DemoFeed::LifelikeRecord(DemoType type) {
    const Kind* kind = &OneOf(Kinds);
    while (kind->Type != type)
        kind = &OneOf(Kinds);
    AlarmRecord record;
    record.DateTime = now_;
    record.AlarmName = kind->Alarm;
    record.LogType = kind->LogType;
    record.Source = kind->Source;
    record.TypeOfEvent = DemoTypeNames[static_cast<std::size_t>(type)];
    record.Category = kind->Category;
    record.EventID = kind->EventID;
    record.AccountName = OneOf(Accounts);
    record.Computer = std::string(OneOf(Sites)) + '-' + std::string(OneOf(Roles)) + '-' +
                      std::to_string(1 + Below(MachinesPerRole));
    record.Description = kind->Description;
    return record;
}

void DemoFeed::MakeOdd(AlarmRecord& record, DemoType& type) {
    switch (Below(7)) {
        case 0:
            record.AlarmName = OneOf(OddValues);
            break;
        case 1:
            record.Source = OneOf(OddValues);
            break;
        case 2:
            record.Category = OneOf(OddValues);
            break;
        case 3:
            record.AccountName = OneOf(OddValues);
            break;
        case 4:
            record.Computer = OneOf(OddValues);
            break;
        case 5:
            record.Description = std::string(OneOf(OddValues)) + "\r\n" + std::string(OneOf(OddValues));
            break;
        default:
            record.TypeOfEvent = OneOf(OddTypes);
            type = DemoType::Other;
            break;
    }
}

/// Returns `length` characters of sentences that continue a description.
std::string DemoFeed::Prose(std::size_t length) {
    std::string text;
    while (text.size() < length) {
        text += Below(3) == 0 ? "\r\n" : "  ";
        text += OneOf(Sentences);
    }
    text.resize(length);
    return text;
}

}  // namespace tallyhorn
