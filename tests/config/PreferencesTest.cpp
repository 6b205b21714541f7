#include <gmock/gmock.h>

#include "config/Preferences.h"
#include "tests/fakes/PreferencesParts.h"

namespace tallyhorn {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

PreferenceFields WithPort(const std::string& text) {
    PreferenceFields fields;
    fields.Port = text;
    return fields;
}

class PreferencesTest : public ::testing::Test {
protected:
    PreferenceFields LoadFrom(const std::string& entries) {
        parts_.Fill(entries);
        return preferences_.Load();
    }

    PreferencesParts parts_;
    Preferences preferences_{parts_.All()};
};

TEST_F(PreferencesTest, LoadsTheFileAsItStands) {
    const struct {
        const char* Entries;
        const char* Port;
        const char* Seperator;
        std::array<bool, 3> ShowTab;
        bool Sound;
        bool DayFirst;
    } cases[] = {
        {"", "0", "", {false, false, false}, false, false},
        {"SyslogUDPPort= 514 \r\nSeperator=.\r\nSoundOn=1\r\nMessageViews=5\r\nDateTime=7\r\n",
         "514",
         ".",
         {true, false, true},
         true,
         true},
        {"SoundOn=2\r\nMessageViews=7\r\nDateTime=0\r\n", "0", "", {true, true, true}, false, false},
        {"SoundOn=yes\r\nMessageViews=10\r\nDateTime=-1\r\n", "0", "", {false, true, false}, false, true},
        {"SyslogUDPPort=40000\r\nSeperator=--\r\n", "40000", "--", {false, false, false}, false, false},
        {"SyslogUDPPort=-5\r\n", "-5", "", {false, false, false}, false, false},
        {"SyslogUDPPort=word\r\n", "0", "", {false, false, false}, false, false},
    };
    for (const auto& testCase : cases) {
        const PreferenceFields fields = LoadFrom(testCase.Entries);
        EXPECT_EQ(fields.Port, testCase.Port) << testCase.Entries;
        EXPECT_EQ(fields.Seperator, testCase.Seperator) << testCase.Entries;
        EXPECT_EQ(fields.ShowTab, testCase.ShowTab) << testCase.Entries;
        EXPECT_EQ(fields.Sound, testCase.Sound) << testCase.Entries;
        EXPECT_EQ(fields.DayFirst, testCase.DayFirst) << testCase.Entries;
    }
    EXPECT_THAT(parts_.Log, IsEmpty());
}

TEST_F(PreferencesTest, TakesNumbersAlone) {
    for (const char* const text :
         {"0", "514", " 514 ", "+514", "-1", "514.5", "5.", ".5", "  -.25  ", "40000", "99999999999999"})
        EXPECT_TRUE(preferences_.Validate(WithPort(text))) << text;
    EXPECT_THAT(parts_.Boxes.Shown, IsEmpty());
    for (const char* const text :
         {"",     " ",    "-",   ".",     "+.",    "5 14",  "5.1.4", "--5",   "- 5", "5-",
          "port", "514x", "1e3", "0x202", "&H202", "1,024", "$514",  "(514)", "5\t", "\xB2"}) {
        parts_.Boxes.Shown.clear();
        EXPECT_FALSE(preferences_.Validate(WithPort(text))) << text;
        EXPECT_THAT(parts_.Boxes.Shown, ElementsAre("You must set the UDP Port to a numeric value.")) << text;
    }
    EXPECT_THAT(parts_.Log, IsEmpty());
}

TEST_F(PreferencesTest, SavesInOrder) {
    LoadFrom("; ours\r\nSyslogUDPPort=514\r\nOther=1\r\nMessageViews=7\r\n");
    EXPECT_TRUE(preferences_.Save({" 1514 ", ".", {true, false, true}, true, true}));
    EXPECT_THAT(parts_.Log, ElementsAre("SyslogUDPPort= 1514 ", "set up the endpoint", "Seperator=.",
                                        "separator .", "SoundOn=1", "sound on", "show tab 0", "hide tab 1",
                                        "show tab 2", "MessageViews=5", "DateTime=1", "date order 1"));
    // Wine's own way is to take the blanks out.
    const std::string port = TALLYHORN_WINE ? "1514" : " 1514 ";
    EXPECT_EQ(parts_.Bytes(),
              "[General]\r\n; ours\r\nSyslogUDPPort=" + port +
                  "\r\nOther=1\r\nMessageViews=5\r\nSeperator=.\r\nSoundOn=1\r\nDateTime=1\r\n");
    EXPECT_EQ(preferences_.Load().Port, "1514");
}

TEST_F(PreferencesTest, SavesAnUnchangedPortWithEmptyFields) {
    LoadFrom("Seperator=-\r\nSoundOn=1\r\nMessageViews=7\r\nDateTime=1\r\n");
    EXPECT_TRUE(preferences_.Save(WithPort("0")));
    EXPECT_THAT(parts_.Log,
                ElementsAre("Seperator=", "separator ", "SoundOn=0", "sound off", "hide tab 0", "hide tab 1",
                            "hide tab 2", "MessageViews=0", "DateTime=0", "date order 0"));
    EXPECT_EQ(parts_.Bytes(), "[General]\r\nSeperator=\r\nSoundOn=0\r\nMessageViews=0\r\nDateTime=0\r\n");
}

TEST_F(PreferencesTest, WhatBecomesOfThePort) {
    enum class Outcome { Unchanged, SetUp, WrittenAndLeft, Left };
    const struct {
        const char* InFile;
        const char* Typed;
        Outcome Result;
    } cases[] = {
        {"514", "514", Outcome::Unchanged},
        {"514", " 514 ", Outcome::Unchanged},
        {"514", "+514", Outcome::Unchanged},
        {"514", "514.5", Outcome::Unchanged},  // halves go to the even number
        {"514", "515", Outcome::SetUp},
        {"515", "515.5", Outcome::SetUp},
        {"514", "0", Outcome::SetUp},
        {"514", "-1", Outcome::SetUp},
        {"514", "32767", Outcome::SetUp},
        {"514", "32768", Outcome::WrittenAndLeft},
        {"514", "32767.5", Outcome::WrittenAndLeft},
        {"514", "65535", Outcome::WrittenAndLeft},
        {"514", "-32768", Outcome::SetUp},
        {"514", "-32769", Outcome::WrittenAndLeft},
        {"514", "2147483647", Outcome::WrittenAndLeft},
        {"514", "2147483648", Outcome::Left},
        {"514", "99999999999999999999", Outcome::Left},
        {"40000", "40000", Outcome::Unchanged},
        {"40000", "40001", Outcome::WrittenAndLeft},
        {"40000", "514", Outcome::SetUp},
    };
    for (const auto& testCase : cases) {
        const std::string write = std::string("SyslogUDPPort=") + testCase.Typed;
        const CallLog rest = {"Seperator=-", "separator -", "SoundOn=0",      "sound off",  "hide tab 0",
                              "hide tab 1",  "hide tab 2",  "MessageViews=0", "DateTime=0", "date order 0"};
        CallLog expected;
        if (testCase.Result == Outcome::SetUp)
            expected = {write, "set up the endpoint"};
        if (testCase.Result == Outcome::WrittenAndLeft)
            expected = {write};
        const bool saved = testCase.Result == Outcome::SetUp || testCase.Result == Outcome::Unchanged;
        if (saved)
            expected.insert(expected.end(), rest.begin(), rest.end());
        LoadFrom(std::string("SyslogUDPPort=") + testCase.InFile + "\r\n");
        PreferenceFields fields = WithPort(testCase.Typed);
        fields.Seperator = "-";
        ASSERT_TRUE(preferences_.Validate(fields)) << testCase.Typed;
        EXPECT_EQ(preferences_.Save(fields), saved) << testCase.Typed;
        EXPECT_THAT(parts_.TakeLog(), ElementsAreArray(expected)) << testCase.InFile << ' ' << testCase.Typed;
    }
}

/// A port that failed is still not the one shown, so a second try fails again, and a lower one is taken.
TEST_F(PreferencesTest, AFailedPortMayBePutRight) {
    LoadFrom("SyslogUDPPort=514\r\n");
    EXPECT_FALSE(preferences_.Save(WithPort("50000")));
    EXPECT_FALSE(preferences_.Save(WithPort("50000")));
    EXPECT_EQ(parts_.Bytes(), "[General]\r\nSyslogUDPPort=50000\r\n");
    parts_.TakeLog();
    EXPECT_TRUE(preferences_.Save(WithPort("5000")));
    EXPECT_EQ(parts_.Log.at(1), "set up the endpoint");
}

TEST_F(PreferencesTest, ResetAsksFirst) {
    const std::string before = "CPWidth=1\r\nCPHeight=2\r\nColWidth1=3\r\nColWidth5=4\r\nSoundOn=1\r\n";
    LoadFrom(before);
    parts_.Boxes.Answer = false;
    preferences_.Reset();
    EXPECT_THAT(parts_.Log, IsEmpty());
    EXPECT_EQ(parts_.Bytes(), "[General]\r\n" + before);
    parts_.Boxes.Answer = true;
    preferences_.Reset();
    const char* const question =
        "Are you sure you want to reset the main window dimensions and column widths?";
    EXPECT_THAT(parts_.Boxes.Shown, ElementsAre(question, question));
    EXPECT_THAT(parts_.Log, ElementsAre("CPWidth=0", "CPHeight=0", "ColWidth1=0", "ColWidth2=0",
                                        "ColWidth3=0", "ColWidth4=0", "ColWidth5=0", "forget sizes",
                                        "maximize", "share out widths", "events"));
    EXPECT_EQ(
        parts_.Bytes(),
        "[General]\r\nCPWidth=0\r\nCPHeight=0\r\nColWidth1=0\r\nColWidth5=0\r\nSoundOn=1\r\nColWidth2=0\r\n"
        "ColWidth3=0\r\nColWidth4=0\r\n");
}

}  // namespace
}  // namespace tallyhorn
