#include <gmock/gmock.h>

#include "config/Preferences.h"
#include "tests/support/PreferencesParts.h"

namespace tallyhorn {
namespace {

using ::testing::ElementsAre;
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
        PreferenceFields Fields;
    } cases[] = {
        {"", WithPort("0")},
        {"SyslogUDPPort= 514 \r\nSeperator=.\r\nSoundOn=1\r\nMessageViews=5\r\nDateTime=7\r\n",
         {"514", ".", {true, false, true}, true, true}},
        {"SoundOn=2\r\nMessageViews=7\r\nDateTime=0\r\n", {"0", "", {true, true, true}, false, false}},
        {"SoundOn=yes\r\nMessageViews=10\r\nDateTime=-1\r\n", {"0", "", {false, true, false}, false, true}},
        {"SyslogUDPPort=40000\r\nSeperator=--\r\n", {"40000", "--", {}, false, false}},
        {"SyslogUDPPort=-5\r\n", WithPort("-5")},
        {"SyslogUDPPort=word\r\n", WithPort("0")},
    };
    for (const auto& [entries, fields] : cases)
        EXPECT_EQ(LoadFrom(entries), fields) << entries;
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
    EXPECT_EQ(parts_.Bytes(),
              "[General]\r\n; ours\r\nSyslogUDPPort= 1514 \r\nOther=1\r\nMessageViews=5\r\nSeperator=.\r\n"
              "SoundOn=1\r\nDateTime=1\r\n");
    EXPECT_EQ(preferences_.Load().Port, "1514");
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
    const CallLog rest = {"Seperator=", "separator ", "SoundOn=0",      "sound off",  "hide tab 0",
                          "hide tab 1", "hide tab 2", "MessageViews=0", "DateTime=0", "date order 0"};
    for (const auto& [inFile, typed, result] : cases) {
        CallLog expected;
        if (result == Outcome::SetUp || result == Outcome::WrittenAndLeft)
            expected.push_back(std::string("SyslogUDPPort=") + typed);
        if (result == Outcome::SetUp)
            expected.emplace_back("set up the endpoint");
        const bool saved = result == Outcome::SetUp || result == Outcome::Unchanged;
        if (saved)
            expected.insert(expected.end(), rest.begin(), rest.end());
        LoadFrom(std::string("SyslogUDPPort=") + inFile + "\r\n");
        ASSERT_TRUE(preferences_.Validate(WithPort(typed))) << typed;
        EXPECT_EQ(preferences_.Save(WithPort(typed)), saved) << typed;
        EXPECT_EQ(parts_.TakeLog(), expected) << inFile << ' ' << typed;
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
    LoadFrom("CPWidth=1\r\nColWidth1=3\r\nSoundOn=1\r\n");
    parts_.Boxes.Answer = false;
    preferences_.Reset();
    EXPECT_THAT(parts_.Log, IsEmpty());
    parts_.Boxes.Answer = true;
    preferences_.Reset();
    const char* const question =
        "Are you sure you want to reset the main window dimensions and column widths?";
    EXPECT_THAT(parts_.Boxes.Shown, ElementsAre(question, question));
    EXPECT_THAT(parts_.Log, ElementsAre("CPWidth=0", "CPHeight=0", "ColWidth1=0", "ColWidth2=0",
                                        "ColWidth3=0", "ColWidth4=0", "ColWidth5=0", "forget sizes",
                                        "maximize", "share out widths", "events"));
}

}  // namespace
}  // namespace tallyhorn
