#include <gmock/gmock.h>

#include "config/Preferences.h"
#include "tests/support/Cases.h"
#include "tests/support/PreferencesParts.h"

namespace tallyhorn {
namespace {

using ::testing::ElementsAre;

class PreferencesTest : public ::testing::Test {
protected:
    static PreferenceFields WithPort(const std::string& text) { return {text, "", {}, false, false}; }
    PreferenceFields LoadFrom(const std::string& entries) {
        parts_.Fill(entries);
        return preferences_.Load();
    }

    PreferencesParts parts_;
    FakePreferencesHost& host_ = parts_.Host;
    Preferences preferences_{parts_.All()};
};

TEST_F(PreferencesTest, LoadShowsTheSettingsFile) {
    const std::pair<const char*, PreferenceFields> cases[] = {
        {"SyslogUDPPort=word\r\n", WithPort("0")},
        {"SyslogUDPPort= 514 \r\nSeperator=.\r\nSoundOn=1\r\nMessageViews=5\r\nDateTime=7\r\n",
         {"514", ".", {true, false, true}, true, true}},
        {"SoundOn=2\r\nMessageViews=7\r\nDateTime=0\r\n", {"0", "", {true, true, true}, false, false}},
        {"SyslogUDPPort=-5\r\nSoundOn=yes\r\nMessageViews=10\r\nDateTime=-1\r\n",
         {"-5", "", {false, true, false}, false, true}}};
    for (const auto& [entries, fields] : cases)
        EXPECT_EQ(LoadFrom(entries), fields) << entries;
}

TEST_F(PreferencesTest, OnlyDecimalNumbersAreValidPorts) {
    for (const std::string& text : SplitAtBars("0| 514 |+514|-1|514.5|5.|.5|  -.25  |99999999999999"))
        EXPECT_TRUE(preferences_.Validate(WithPort(text)) && parts_.Boxes.Shown.empty()) << text;
    const char* const bad =
        "| |-|.|+.|5 14|5.1.4|--5|- 5|5-|port|514x|1e3|0x202|&H202|1,024|$514|(514)|5\t|\xB2";
    for (const std::string& text : SplitAtBars(bad)) {
        parts_.Boxes.Shown.clear();
        EXPECT_FALSE(preferences_.Validate(WithPort(text))) << text;
        EXPECT_THAT(parts_.Boxes.Shown, ElementsAre("You must set the UDP Port to a numeric value.")) << text;
    }
}

TEST_F(PreferencesTest, FileConsoleAndNextDialogGetTheSameSettings) {
    LoadFrom("SyslogUDPPort=514\r\n");
    const PreferenceFields saved[] = {{"514", ".", {true, false, true}, true, true},
                                      {"1514", "", {false, true, false}, false, false},
                                      {"1514", "/", {}, false, true}};
    for (const PreferenceFields& fields : saved) {
        EXPECT_TRUE(preferences_.Save(fields));
        EXPECT_EQ(host_.Held, ReadSettings(parts_.Profile));
        EXPECT_EQ(Preferences(parts_.All()).Load(), fields);
    }
    EXPECT_THAT(host_.OpenedPorts, ElementsAre(1514)) << "only a changed port is opened";
}

TEST_F(PreferencesTest, AChangedPortIsOpenedIfItFitsInto16Bits) {
    enum Outcome { Unchanged, Opened, WrittenAndLeft, Left };
    // Each pair is the port in the file and the port as typed.  Halves are rounded to the even number.
    const std::pair<Outcome, const char*> cases[] = {
        {Unchanged, "514= 514 |514=+514|514=514.5|40000=40000"},
        {Opened, "514=515|515=515.5|514= 1514 |514=0|514=-1|514=32767|514=-32768|40000=514"},
        {WrittenAndLeft, "514=32768|514=32767.5|514=-32769|514=2147483647|40000=40001"},
        {Left, "514=2147483648|514=99999999999999999999"}};
    for (const auto& [result, ports] : cases) {
        for (const auto& [inFile, typed] : SplitPairs(ports)) {
            SCOPED_TRACE(typed);
            LoadFrom("SyslogUDPPort=" + inFile + "\r\n");
            host_.Held.DateTime = -1;
            host_.OpenedPorts.clear();
            const bool saved = result == Unchanged || result == Opened;
            EXPECT_EQ(preferences_.Save(WithPort(typed)), saved);
            EXPECT_EQ(host_.Held.DateTime, saved ? 0 : -1) << "the settings after the port";
            const std::string& written = result == Opened || result == WrittenAndLeft ? typed : inFile;
            EXPECT_TRUE(parts_.Bytes().starts_with("[General]\r\nSyslogUDPPort=" + written + "\r\n"));
            // The endpoint reads the port from the file, which must therefore be written first.
            const std::vector<std::int32_t> opened(result == Opened ? 1 : 0, ReadSyslogPort(parts_.Profile));
            EXPECT_EQ(host_.OpenedPorts, opened);
            if (result != Unchanged)
                continue;
            host_.Listening.reset();
            EXPECT_TRUE(preferences_.Save(WithPort(typed)));
            EXPECT_THAT(host_.OpenedPorts, ElementsAre(std::stoi(inFile))) << "opened, since none is open";
            host_.Listening = 514;
        }
    }
}

TEST_F(PreferencesTest, NotesWhichPortsAreNotOpened) {
    const std::string later = "Used from the next start";
    const std::string none = "This is no UDP port: ports are 0 to 65535";
    // The port in the file, the port at which the console listens, ports as typed, the note about them.
    const std::tuple<const char*, std::optional<std::int32_t>, const char*, std::string> cases[] = {
        {"514", 514, "0|514| 1514 |32767|word||40000x", ""},
        {"514", 514, "32768|40000| 65535 ", later},
        {"514", 514, "65536|70000|-5|99999999999", none},
        {"40000", 40000, "40000", ""},
        {"40000", 514, "40000", later},
        {"40000", std::nullopt, "40000", ""},
        {"40000", std::nullopt, "40001", later},
    };
    for (const auto& [inFile, listening, typed, note] : cases) {
        LoadFrom("SyslogUDPPort=" + std::string(inFile) + "\r\n");
        host_.Listening = listening;
        for (const std::string& port : SplitAtBars(typed))
            EXPECT_EQ(preferences_.NoteAbout(port), note) << port;
    }
}

TEST_F(PreferencesTest, AFailedPortFailsAgainUntilItIsCorrected) {
    LoadFrom("SyslogUDPPort=514\r\n");
    EXPECT_FALSE(preferences_.Save(WithPort("50000")));
    EXPECT_FALSE(preferences_.Save(WithPort("50000")));
    EXPECT_EQ(parts_.Bytes(), "[General]\r\nSyslogUDPPort=50000\r\n");
    EXPECT_TRUE(preferences_.Save(WithPort("5000")));
    EXPECT_TRUE(preferences_.Save(WithPort("5000")));
    EXPECT_THAT(host_.OpenedPorts, ElementsAre(5000));
}

TEST_F(PreferencesTest, ResetAsksFirst) {
    LoadFrom("CPWidth=1\r\nColWidth1=3\r\nColWidth5=4\r\nSoundOn=1\r\n");
    host_.Held = ReadSettings(parts_.Profile);
    for (const bool answer : {false, true}) {
        EXPECT_EQ(host_.Held.CPWidth, 1);
        parts_.Boxes.Answer = answer;
        preferences_.Reset();
        EXPECT_EQ(host_.Held, ReadSettings(parts_.Profile));
        EXPECT_EQ(host_.WindowCalls, answer ? "maximize share " : "");
    }
    EXPECT_EQ(host_.Held, (Settings{0, "", 0, 0, {}, true, 0}));
    const char* const question =
        "Are you sure you want to reset the main window dimensions and column widths?";
    EXPECT_THAT(parts_.Boxes.Shown, ElementsAre(question, question));
    EXPECT_EQ(parts_.Events.Runs, 1) << "pending events draw the window behind the dialog";
}

}  // namespace
}  // namespace tallyhorn
