#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "config/Preferences.h"
#include "config/TextProfileFunctions.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeWindow.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {

/// What was done, in words and in order, by all that share the list.
using CallLog = std::vector<std::string>;

/// The text code, which notes the writes as KEY=VALUE.
class RecordingProfiles final : public TextProfileFunctions {
public:
    explicit RecordingProfiles(CallLog& log) : log_(log) {}

    bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                   const char* file) override {
        log_.push_back(std::string(key).append("=").append(value));
        return TextProfileFunctions::WritePrivateProfileString(section, key, value, file);
    }

private:
    CallLog& log_;
};

/// A console that only notes what the preferences make it do.
class FakePreferencesHost final : public PreferencesHost {
public:
    explicit FakePreferencesHost(CallLog& log) : log_(log) {}

    void InitializeWinsock() override { Note("set up the endpoint"); }
    void SetSeperator(std::string_view seperator) override { Note("separator ", seperator); }
    void SetSoundOn(bool on) override { Note("sound ", on ? "on" : "off"); }
    void SetDateTime(std::int32_t order) override { Note("date order ", std::to_string(order)); }
    void ShowTab(int tab, bool shown) override {
        Note(shown ? "show tab " : "hide tab ", std::to_string(tab));
    }
    void ForgetSizes() override { Note("forget sizes"); }
    void MaximizeWindow() override { Note("maximize"); }
    void ShareOutColumnWidths() override { Note("share out widths"); }

private:
    void Note(std::string what, std::string_view value = {}) { log_.push_back(what.append(value)); }

    CallLog& log_;
};

/// A settings file of its own, with a console and an operator that note and answer.
struct PreferencesParts {
    PreferencesParts() {
        Profile.SetINIFileName(Path);
        Events.Event = [this] { Log.emplace_back("events"); };
    }

    void Fill(const std::string& entries) { WriteBytes(Path, "[General]\r\n" + entries); }
    std::string Bytes() const { return ReadBytes(Path); }
    Preferences::Parts All() { return {Profile, Host, Boxes, Events}; }
    /// What was done since the last look.
    CallLog TakeLog() { return std::exchange(Log, {}); }

    TemporaryFolder Folder;
    std::string Path = Folder / "thlisten.ini";
    CallLog Log;
    RecordingProfiles Profiles{Log};
    FakeClock Time;
    PrivateProfile Profile{Profiles, Time};
    FakePreferencesHost Host{Log};
    FakeMessageBoxes Boxes;
    FakePendingEvents Events;
};

}  // namespace tallyhorn
