#include <iomanip>
#include <sstream>

#include "platform/DatagramSockets.h"
#include "tests/app/linux/ConsoleProcess.h"

namespace tallyhorn {
namespace {

using std::string_literals::operator""s;

/// Reads /proc/net: trying to bind the port could make the console's own attempt fail.
bool SomebodyListensAt(std::uint16_t port) {
    std::ostringstream local;
    local << ':' << std::hex << std::uppercase << std::setw(4) << std::setfill('0') << port << " 00000000";
    return (ReadBytes("/proc/net/udp") + ReadBytes("/proc/net/udp6")).find(local.str()) != std::string::npos;
}

/// Runs the real console with its own UDP port.
class SyslogProcessTest : public ProcessTest {
protected:
    void SetUp() override {
        ProcessTest::SetUp();
        WriteBytes(folder_ / "thlisten.ini",
                   "[General]\r\nMessageViews=7\r\nSyslogUDPPort=" + Port() + "\r\n");
    }
    pid_t StartListening() {
        const pid_t console = StartConsole();
        EXPECT_TRUE(Eventually([this] { return SomebodyListensAt(port_); }));
        return console;
    }
    /// Runs a shell command in which $1 is the text and $2 the port.
    int Run(const std::string& command, const std::string& text) const {
        return ExitStatus(Spawn("/bin/sh", {"-c", command, "sh", text, Port()}));
    }
    /// Ends a console and returns its summary of the syslog channel.
    std::string End(pid_t console) {
        std::this_thread::sleep_for(std::chrono::seconds(2));  // a busy machine needs time to show the window
        kill(console, SIGTERM);
        EXPECT_EQ(ExitStatus(console), 0);
        const std::string summary = ReadBytes(folder_ / "summary");
        const std::size_t line = summary.find("\nSyslog ");
        return line == std::string::npos ? summary : summary.substr(line + 1);
    }
    std::string Backup() const { return ReadBytes(folder_ / "Backup.dat"); }
    std::string Port() const { return std::to_string(port_); }

    /// A port that was free a moment ago.
    const std::uint16_t port_ = MakeDatagramSockets()->Listen(0, [] {})->Port();
};

/// Each program sends a notification and another text.
TEST_F(SyslogProcessTest, OnlyNotificationsAreKeptAndComeBack) {
    // In a command, $1 is the text and $2 the port.
    const std::pair<const char*, const char*> senders[] = {
        {"true", TALLYHORN_SEND " --syslog \"127.0.0.1:$2\" \"$1\""},
        {"logger", "logger -n 127.0.0.1 -P \"$2\" -d \"$1\""},
        {"nc", "printf %s \"$1\" | nc -u -w 1 127.0.0.1 \"$2\""}};
    const std::string text =
        "Date: 8/21/2008 2:05:09 PM\r\nAlarm Name: Logon failed\r\nLog Type: Security\r\n"
        "Source: Auditing\r\nType Of Event: Failure Audit\r\nCategory: Logon/Logoff\r\n"
        "EventID: 4625\r\nAccount: ACME\\SVC\r\nComputer: LON-DC-1\r\nDescription: \r\n"
        "The password, it was wrong: twice.";
    std::string kept;
    int count = 0;
    const pid_t console = StartListening();
    for (const auto& [program, command] : senders) {
        if (Run("command -v \"$1\"", program) != 0)
            continue;  // the program is not installed here
        for (const char* const sent :
             {"Event 4625 (Logon failed): Security Log, 8/21/2008 2:05:09 PM, Auditing, Failure Audit, "
              "Logon/Logoff, 4625, acme\\svc, lon-dc-1, The password, it was wrong: twice.",
              "session opened for user root(uid=0)"})
            EXPECT_EQ(Run(command, sent), 0);
        kept += "00" + std::to_string(text.size()) + text;
        ++count;
    }
    const std::string number = std::to_string(count);
    const std::string shown = " received, " + number + " kept, rows: 0 information, 0 warning, " + number +
                              " critical, leaves: " + number + "\n";
    EXPECT_EQ(End(console), "Syslog " + std::to_string(2 * count) + shown);
    EXPECT_EQ(Backup(), kept);
    EXPECT_EQ(End(StartListening()), "Syslog 0" + shown);
    EXPECT_EQ(Backup(), kept);
}

TEST_F(SyslogProcessTest, AFeedIsKeptInOrderThroughRestarts) {
    const pid_t console = StartListening();
    EXPECT_EQ(
        Run(TALLYHORN_SEND " --syslog \"127.0.0.1:$2\" $1", "--demo --number --count 2000 --rate 20000"), 0);
    const std::string first = End(console);
    EXPECT_TRUE(first.starts_with("Syslog 2000 received, 2000 kept, ")) << first;
    const std::string backup = Backup();
    std::size_t at = 0;
    for (int number = 1; number <= 2000; ++number) {
        const std::string mark = " #" + std::to_string(1'000'000 + number).substr(1);
        at = backup.find(mark, at);
        ASSERT_NE(at, std::string::npos) << mark << " is missing or out of order";
    }

    EXPECT_EQ(End(StartListening()), "Syslog 0" + first.substr("Syslog 2000"s.size()));
    EXPECT_TRUE(Backup() == backup);
}

}  // namespace
}  // namespace tallyhorn
