#pragma once

#include <optional>

#include "config/Preferences.h"
#include "config/Settings.h"
#include "config/TextProfileFunctions.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FakePendingEvents.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {

/// Records what the preferences set in the console.
class FakePreferencesHost final : public PreferencesHost {
public:
    explicit FakePreferencesHost(PrivateProfile& profile) : profile_(profile) {}

    void InitializeWinsock() override { OpenedPorts.push_back(ReadSyslogPort(profile_)); }
    std::optional<std::int32_t> ListeningPort() const override { return Listening; }
    void SetSeperator(std::string_view seperator) override { Held.Seperator = seperator; }
    void SetSoundOn(bool on) override { Held.SoundOn = on; }
    void SetDateTime(std::int32_t order) override { Held.DateTime = order; }
    void ShowTab(int tab, bool shown) override {
        Held.MessageViews = (Held.MessageViews & ~(1 << tab)) | (shown ? 1 << tab : 0);
    }
    void ForgetSizes() override {
        Held.CPWidth = Held.CPHeight = 0;
        Held.ColumnWidths = {};
    }
    void MaximizeWindow() override { WindowCalls += "maximize "; }
    void ShareOutColumnWidths() override {
        WindowCalls += Held.ColumnWidths == Settings().ColumnWidths ? "share " : "keep ";
    }

    std::optional<std::int32_t> Listening = 514;
    Settings Held;
    std::vector<std::int32_t> OpenedPorts;
    std::string WindowCalls;

private:
    PrivateProfile& profile_;
};

/// The parts that a Preferences object works on, with a settings file in a temporary folder.
struct PreferencesParts {
    PreferencesParts() { Profile.SetINIFileName(Path); }

    void Fill(const std::string& entries) { WriteBytes(Path, "[General]\r\n" + entries); }
    std::string Bytes() const { return ReadBytes(Path); }
    Preferences::Parts All() { return {Profile, Host, Boxes, Events}; }

    TemporaryFolder Folder;
    std::string Path = Folder / "thlisten.ini";
    TextProfileFunctions Profiles;
    FakeClock Time;
    PrivateProfile Profile{Profiles, Time};
    FakePreferencesHost Host{Profile};
    FakeMessageBoxes Boxes;
    FakePendingEvents Events;
};

}  // namespace tallyhorn
