#pragma once

#include <memory>
#include <string>

#include "config/MakeProfileFunctions.h"
#include "config/Preferences.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakePreferencesHost.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fakes/FileBytes.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {

/// A settings file of its own, through the system's profile functions, with a console and an operator that
/// note and answer.
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
    std::unique_ptr<ProfileFunctions> System = MakeProfileFunctions();
    RecordingProfiles Profiles{*System, Log};
    FakeClock Time;
    PrivateProfile Profile{Profiles, Time};
    FakePreferencesHost Host{Log};
    FakeMessageBoxes Boxes;
    FakePendingEvents Events;
};

}  // namespace tallyhorn
