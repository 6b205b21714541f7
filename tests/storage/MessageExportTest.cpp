#include <algorithm>
#include <cstring>
#include <regex>
#include <tuple>

#include "storage/ExportFile.h"
#include "storage/MessageExport.h"
#include "tests/storage/ExportFixture.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class MessageExportTest : public ExportFixture {
protected:
    /// Checks that the export asks, fails and shows an error with a number, a tab and a text.
    void ExpectFailure() {
        Boxes.Shown.clear();
        export_.ExportMessages(Display.Page);
        ASSERT_EQ(Boxes.Shown.size(), 2U);
        const std::string channel = Display.Page == MessagePage::NetBios ? "NetBIOS" : "syslog";
        const std::regex failure("The following error occurred when attempting to export received " +
                                 channel + " messages to text\\.  Error # [1-9][0-9]*:\t[^\r\n\t]{4,}");
        EXPECT_TRUE(std::regex_match(Boxes.Shown[1], failure)) << Boxes.Shown[1];
        EXPECT_EQ(Display.WorkUnderWay, 0);
        EXPECT_FALSE(TheGate.SyslogDeleteInProgress());
    }
    /// Selects a tree node by its position among its siblings on each level.
    void Select(std::initializer_list<std::size_t> positions) {
        TreeNode node;
        for (const std::size_t position : positions)
            node = Received.Tree.ChildAt(node, position);
        Received.Tree.SelectNode(node);
    }
    /// Adds three messages to each channel and selects the branch of the syslog messages.
    void FillAll() {
        for (int i = 0; i < 3; ++i) {
            StoreNamed("n");
            KeepSyslog(Record("n"));
        }
        Select({0});
    }

    /// Writes a file with this record and returns what follows the header.
    std::string LineOf(const AlarmRecord& record) {
        ExportFile file(file_, false);
        EXPECT_TRUE(file.Write(record));
        EXPECT_FALSE(file.Finish());
        const std::string bytes = ReadBytes(file_);
        EXPECT_TRUE(bytes.starts_with(Header)) << bytes;
        return bytes.substr(std::strlen(Header));
    }

    static constexpr MessagePage Pages[] = {MessagePage::NetBios, MessagePage::Syslog,
                                            MessagePage::Consolidated};
};

TEST_F(MessageExportTest, AsksAndProposesANameForEachPage) {
    const std::tuple<MessagePage, const char*, const char*> cases[] = {
        {MessagePage::NetBios, "all Received NetBIOS Messages", "Received_NetBIOS"},
        {MessagePage::Syslog, "all Received Syslog Messages", "Received_Syslog"},
        {MessagePage::Consolidated, "this tree branch", "Consolidated_Syslog"},
    };
    FillAll();
    Time.Local = MakeAlarmDate({.Year = 2008, .Month = 8, .Day = 1, .Hour = 23})->Seconds;
    for (const auto& [page, what, name] : cases) {
        Display.Page = page;
        dialog_.Asked.clear();
        EXPECT_EQ(Exported(), Header + Line("n") + Line("n") + Line("n"));
        EXPECT_EQ(Boxes.Shown[0], "Are you sure you want to export " + std::string(what) + " to a file?");
        ASSERT_EQ(dialog_.Asked.size(), 1U);
        EXPECT_EQ(dialog_.Asked[0].first,
                  fs::path("console folder") / (std::string(name) + "_Messages_01-Aug-2008.txt"));
        EXPECT_EQ(dialog_.Asked[0].second, "Text files (*.txt)|*.txt");
        fs::remove(file_);
        dialog_.Answer.reset();
        for (const bool answer : {false, true}) {
            dialog_.Asked.clear();
            Boxes.Shown.clear();
            Boxes.Answer = answer;
            export_.ExportMessages(Display.Page);
            EXPECT_EQ(Boxes.Shown.size(), 1U);
            EXPECT_EQ(dialog_.Asked.size(), answer ? 1U : 0U);
            EXPECT_EQ(CountFiles(folder_.Path()), 0U) << "No and Cancel write nothing";
        }
        dialog_.Answer = file_;
    }
}

TEST_F(MessageExportTest, DoesNothingIfThereIsNothingToExport) {
    ExpectSilence();  // there is no NetBIOS message
    Display.Page = MessagePage::Consolidated;
    ExpectSilence();  // no node is selected
    KeepSyslog(Record("one"));
    ExpectSilence();
    Display.Page = MessagePage::Syslog;
    ExpectSilence();  // a single syslog message is not exported
    Display.Page = static_cast<MessagePage>(-1);
    ExpectSilence();  // no page is shown

    Display.Page = MessagePage::Syslog;
    KeepSyslog(Record("two"));
    Exported();
    Received.Clear(Received.Syslog);
    EXPECT_EQ(Exported(), Header) << "a cleared channel is exported";
    Display.Page = MessagePage::NetBios;
    StoreNamed("one");
    EXPECT_EQ(Exported(), Header + Line("one"));
}

TEST_F(MessageExportTest, WritesAllMessagesInTheOrderOfTheirSlots) {
    Display.Page = MessagePage::Syslog;
    for (const char* const name : {"a", "b", "c", "d"})
        KeepSyslog(Record(name));
    Received.Syslog.Messages.Free(1);
    Received.Syslog.Messages.Free(2);
    Received.Syslog.Rows.Remove(std::vector<Slot>{1, 2});
    // Messages that the view filter hides are exported too.
    KeepSyslog(Record("hidden", "Warning"), false);
    Received.Syslog.Messages.Put(700, "   ");
    EXPECT_EQ(Exported(), Header + Line("a") + Line("hidden", "Warning") + Line("d"));

    Display.Page = MessagePage::NetBios;
    for (const char* const name : {"a", "b", "c"})
        StoreNamed(name);
    Received.NetBios.Messages.Free(2);
    EXPECT_EQ(Exported(), Header + Line("a") + Line("c"));
}

TEST_F(MessageExportTest, ReadsTheTextsOfEachChannelInItsFormat) {
    Received.SetDateStyle({true, "-"});
    KeepNetBios(
        "Date: 12/25/2008 15:04:05\r\n\r\n\r\nAlarm (a (b) c)\r\n\r\n\r\nLog: Security\r\nSource: x,y\r\n"
        "Type: audit FAILURE \r\nCategory:\r\nID: no\r\nAccount: m\xFCller\r\nComputer: pc\r\n"
        "Description: one\r\n two\r\n",
        false);
    KeepNetBios("short", false);
    // Fields that a text lacks keep the values of the previous text.
    const std::string last =
        "25/12/2008 3:04:05 PM,a (b) c,Security,x,y,audit FAILURE ,,0,M\xDCLLER,PC,\"one  two\"\r\n";
    EXPECT_EQ(Exported(), Header + last + last);
    EXPECT_EQ(Alarm.AlarmName, "a (b) c");

    Display.Page = MessagePage::Syslog;
    AlarmRecord record = Record("(x): y", "failureaudit");
    record.Description = "one\r\nSource: two\r\n";
    KeepSyslog(record);
    Time.Local = MakeAlarmDate({.Year = 2010})->Seconds;
    Received.Syslog.Messages.Put(1, "not a stored text");
    EXPECT_EQ(Exported(),
              Header + std::string("21/08/2008 2:05:09 PM,(x): y,System,Disk,Failure Audit,None,7,JOE,PC,"
                                   "\"one Source: two\"\r\n"
                                   "01/01/2010 12:00:00 AM,???,???,Disk,,None,7,???,???,"
                                   "\"one Source: two\"\r\n"))
        << "a text in another format gets the present date";
}

TEST_F(MessageExportTest, WritesABranchInTheOrderOfTheTree) {
    Display.Page = MessagePage::Consolidated;
    // Groups are sorted without regard to case; leaves by log type, source, event ID and date, as text.
    const std::tuple<const char*, const char*, const char*, const char*, int> records[] = {
        {"beta", "Warning", "PC", "S", 1},  {"Alpha", "Warning", "PC", "S", 1},
        {"Alpha", "Error", "B", "S", 1},    {"Alpha", "Error", "a", "Z", 1},
        {"Alpha", "Error", "a", "M", 5},    {"Alpha", "Error", "a", "M", 12},
        {"Alpha", "unknown", "a", "M", 12},
    };
    std::vector<std::string> lines;
    for (const auto& [name, type, computer, source, eventId] : records) {
        AlarmRecord record = RecordOf({.Name = name, .Computer = computer, .Type = type, .Source = source});
        record.EventID = eventId;
        KeepSyslog(record);
        lines.push_back(std::string("08/21/2008 2:05:09 PM,") + name + ",System," + source + "," + type +
                        ",None," + std::to_string(eventId) + ",JOE," + computer + ",\"text\"\r\n");
    }
    Select({0});
    EXPECT_EQ(Exported(), Header + lines[5] + lines[4] + lines[3] + lines[2] + lines[1])
        << "a branch that was never expanded is exported too";
    Select({0, 0, 0});
    EXPECT_EQ(Exported(), Header + lines[5] + lines[4] + lines[3]);
    Select({0, 0, 0, 1});
    EXPECT_EQ(Exported(), Header + lines[4]);
}

/// Events run while the question and the dialog are open, so the selected branch may change.
TEST_F(MessageExportTest, ExportsTheBranchThatIsSelectedAfterTheDialog) {
    Display.Page = MessagePage::Consolidated;
    KeepSyslog(Record("a"));
    KeepSyslog(Record("b"));
    Select({0});
    dialog_.WhileOpen = [this] { Select({1}); };
    EXPECT_EQ(Exported(), Header + Line("b"));
    Boxes.WhileAsked = [this] { Select({1}); };
    dialog_.WhileOpen = [this] { Select({0}); };
    EXPECT_EQ(Exported(), Header + Line("a"));
    fs::remove(file_);
    dialog_.WhileOpen = [this] { Received.Clear(Received.Syslog); };
    export_.ExportMessages(Display.Page);
    EXPECT_EQ(CountFiles(folder_.Path()), 0U) << "the branch was removed";
}

TEST_F(MessageExportTest, HoldsArrivalsOnlyWhileItWrites) {
    for (int i = 0; i < 5000; ++i) {
        StoreNamed("n");
        KeepSyslog(Record("n"));
    }
    Select({0});
    Boxes.WhileAsked = [this] { EXPECT_FALSE(TheGate.SyslogDeleteInProgress()); };
    Events.Event = [this] {
        EXPECT_TRUE(TheGate.SyslogDeleteInProgress());
        EXPECT_EQ(Display.WorkUnderWay, 1);
    };
    Time.PerLook = 1ms;
    for (const MessagePage page : Pages) {
        Display.Page = page;
        Display.Progress.clear();
        const int before = Events.Runs;
        const std::string bytes = Exported();
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 5001);
        EXPECT_GE(Events.Runs - before, 5000 / 11);
        EXPECT_LE(Display.Progress.size(), 501U) << "progress is not shown for every line";
        EXPECT_GT(Display.Progress.back().first, 4900U);
        EXPECT_EQ(Display.Progress.back().second, 5000U);
        EXPECT_FALSE(TheGate.SyslogDeleteInProgress());
        EXPECT_EQ(Display.WorkUnderWay, 0);
    }
}

TEST_F(MessageExportTest, ReportsAFailureAndExportsTheNextTime) {
    FillAll();
    for (const MessagePage page : Pages) {
        Display.Page = page;
        dialog_.Answer = folder_.Path() / "missing" / "f.txt";
        ExpectFailure();
        EXPECT_EQ(CountFiles(folder_.Path()), 0U);
        dialog_.Answer = file_;
        EXPECT_EQ(Exported(), Header + Line("n") + Line("n") + Line("n"));
        fs::remove(file_);
    }
    WriteBytes(folder_ / "Backup.dat", "the console's own");
    dialog_.Answer = folder_.Path() / "." / "Backup.dat";
    ExpectFailure();
    EXPECT_EQ(ReadBytes(folder_ / "Backup.dat"), "the console's own");
}

TEST_F(MessageExportTest, ReplacesNothingButLineEnds) {
    const std::string longOne(700'000, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"   ", ""},
        {"\r\n a\r\n\r\nb \r\n", "a  b"},
        {"\r\n\r\n", ""},
        {"\ta\t", "\ta\t"},
        {"a\rb\nc\n\rd\r", "a b c  d"},
        {"a\r\r\nb", "a  b"},
        {"said \"no\", twice", "said \"no\", twice"},
        {std::string("a\0b", 3), std::string("a\0b", 3)},
        {longOne, longOne},
    };
    for (const auto& [description, expected] : cases) {
        const std::string line =
            LineOf(RecordOf({.Name = "\rn\n,\"m\"\r\n=cmd|' /C'!A0<b>%n&amp;", .Description = description}));
        EXPECT_TRUE(
            line ==
            "08/21/2008 2:05:09 PM, n ,\"m\" =cmd|' /C'!A0<b>%n&amp;,System,Disk,Error,None,7,JOE,PC,\"" +
                expected + "\"\r\n")
            << line.substr(0, 100);
    }
}

}  // namespace
}  // namespace tallyhorn
