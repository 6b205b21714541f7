#include <arpa/inet.h>
#include <sys/socket.h>

#include <iomanip>
#include <sstream>

#include "tests/app/linux/ConsoleProcess.h"

namespace tallyhorn {
namespace {

using std::string_literals::operator""s;

/// Returns a port that was free a moment ago.
std::uint16_t FreePort() {
    const int probe = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    socklen_t length = sizeof address;
    EXPECT_EQ(bind(probe, reinterpret_cast<const sockaddr*>(&address), length), 0);
    EXPECT_EQ(getsockname(probe, reinterpret_cast<sockaddr*>(&address), &length), 0);
    close(probe);
    return ntohs(address.sin_port);
}

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

    const std::uint16_t port_ = FreePort();
};

/// A program that sends a text by UDP.  In Command, $1 is the text and $2 the port.
struct Sender {
    const char* Program;
    const char* Command;
};

void PrintTo(const Sender& sender, std::ostream* stream) {
    *stream << sender.Program;
}

class SyslogSenderTest : public SyslogProcessTest, public ::testing::WithParamInterface<Sender> {};

TEST_P(SyslogSenderTest, OnlyANotificationIsKeptAndComesBack) {
    const bool ours = std::string_view(GetParam().Program) == "tallyhorn-send";
    if (!ours && Run("command -v \"$1\"", GetParam().Program) != 0)
        GTEST_SKIP() << "there is no " << GetParam().Program << " here";
    const pid_t console = StartListening();
    for (const char* const text :
         {"Event 4625 (Logon failed): Security Log, 8/21/2008 2:05:09 PM, Auditing, Failure Audit, "
          "Logon/Logoff, 4625, acme\\svc, lon-dc-1, The password, it was wrong: twice.",
          "session opened for user root(uid=0)"})
        EXPECT_EQ(Run(GetParam().Command, text), 0);
    const std::string shown = " received, 1 kept, rows: 0 information, 0 warning, 1 critical, leaves: 1\n";
    EXPECT_EQ(End(console), "Syslog 2" + shown);
    const std::string kept =
        "Date: 8/21/2008 2:05:09 PM\r\nAlarm Name: Logon failed\r\nLog Type: Security\r\n"
        "Source: Auditing\r\nType Of Event: Failure Audit\r\nCategory: Logon/Logoff\r\n"
        "EventID: 4625\r\nAccount: ACME\\SVC\r\nComputer: LON-DC-1\r\nDescription: \r\n"
        "The password, it was wrong: twice.";
    EXPECT_EQ(Backup(), "00" + std::to_string(kept.size()) + kept);

    EXPECT_EQ(End(StartListening()), "Syslog 0" + shown);
    EXPECT_EQ(Backup(), "00" + std::to_string(kept.size()) + kept);
}

INSTANTIATE_TEST_SUITE_P(Programs, SyslogSenderTest,
                         ::testing::Values(Sender{"tallyhorn-send",
                                                  TALLYHORN_SEND " --syslog \"127.0.0.1:$2\" \"$1\""},
                                           Sender{"logger", "logger -n 127.0.0.1 -P \"$2\" -d \"$1\""},
                                           Sender{"nc", "printf %s \"$1\" | nc -u -w 1 127.0.0.1 \"$2\""}));

TEST_F(SyslogProcessTest, AFeedIsKeptInOrderThroughRestarts) {
    const pid_t console = StartListening();
    EXPECT_EQ(
        Run(TALLYHORN_SEND " --syslog \"127.0.0.1:$2\" $1", "--demo --number --count 2000 --rate 20000"), 0);
    const std::string first = End(console);
    EXPECT_TRUE(first.starts_with("Syslog 2000 received, 2000 kept, ")) << first;
    const std::string backup = Backup();
    std::size_t at = 0;
    for (int number = 1; number <= 2000; ++number) {
        std::ostringstream mark;
        mark << " #" << std::setw(6) << std::setfill('0') << number;
        at = backup.find(mark.str(), at);
        ASSERT_NE(at, std::string::npos) << mark.str() << " is missing or out of order";
    }

    EXPECT_EQ(End(StartListening()), "Syslog 0" + first.substr("Syslog 2000"s.size()));
    EXPECT_TRUE(Backup() == backup);
}

}  // namespace
}  // namespace tallyhorn
