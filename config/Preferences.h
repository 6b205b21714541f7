#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "config/PreferencesHost.h"
#include "config/PrivateProfile.h"
#include "platform/MessageBoxes.h"
#include "platform/PendingEvents.h"

namespace tallyhorn {

/// What the preferences dialog shows, and hands back as the user left it; a plain value.
struct PreferenceFields {
    std::string Port;
    std::string Seperator;
    std::array<bool, 3> ShowTab{};
    bool Sound = false;
    bool DayFirst = false;
};

/// The preferences dialog's commands over the settings file and the running console, for one opening of the
/// dialog; owns the port that it showed and nothing else.  Called from the user-interface thread.
///
/// A write to the file that fails is passed over.
class Preferences {
public:
    /// All of it outlives this.
    struct Parts {
        PrivateProfile& Profile;
        PreferencesHost& Host;
        MessageBoxes& Boxes;
        PendingEvents& Events;
    };
    explicit Preferences(const Parts& parts) : parts_(parts) {}

    /// Reads the file as it stands now; what is missing gives 0 or "".
    PreferenceFields Load();

    /// Whether the fields may be saved; says why not.
    bool Validate(const PreferenceFields& fields);

    /// Writes valid fields and lets them take effect; true where all is done and the dialog closes.  A
    /// changed port beyond 16 bits is written and ends the command there, one beyond 32 bits before it: the
    /// endpoint stays as it is, and nothing further is saved.
    bool Save(const PreferenceFields& fields);

    /// Asks; on Yes forgets the window's size and the column widths and shows them as without any.
    void Reset();

private:
    bool SavePort(const std::string& text);
    void SaveSound(bool on);
    void SaveTabs(const std::array<bool, 3>& shown);

    Parts parts_;
    std::int32_t shownPort_ = 0;
};

}  // namespace tallyhorn
