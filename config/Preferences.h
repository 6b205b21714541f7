#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "config/PreferencesHost.h"
#include "config/PrivateProfile.h"
#include "platform/MessageBoxes.h"
#include "platform/PendingEvents.h"

namespace tallyhorn {

/// The contents of the preferences dialog, as it shows them at first or as the user has changed them.
struct PreferenceFields {
    std::string Port;
    std::string Seperator;  ///< compatibility: spelled as the key in the settings file
    std::array<bool, 3> ShowTab{};
    bool Sound = false;
    bool DayFirst = false;

    bool operator==(const PreferenceFields&) const = default;
};

/// The commands of the preferences dialog: load, validate, save, reset.  One object serves one opening of the
/// dialog; it remembers the port that the dialog showed.  Writes to the settings file that fail are ignored.
class Preferences {
public:
    /// What the commands work on; must outlive this object.
    struct Parts {
        PrivateProfile& Profile;
        PreferencesHost& Host;
        MessageBoxes& Boxes;
        PendingEvents& Events;
    };
    explicit Preferences(const Parts& parts) : parts_(parts) {}

    /// Reads the settings file.  Keys that are missing give 0 or "".
    PreferenceFields Load();

    /// Returns whether the fields may be saved; shows a message box if not.
    bool Validate(const PreferenceFields& fields);

    /// Writes fields that Validate accepts and applies them to the console.  Returns true if all of them were
    /// saved, so that the dialog may close.
    ///
    /// compatibility: a port that does not fit into 16 bits ends the command without a message and without
    /// opening the endpoint on it.  Before that, the port is written if it fits into 32 bits; nothing after
    /// it is saved.
    bool Save(const PreferenceFields& fields);

    /// Asks for confirmation.  On Yes, forgets the window's size and the column widths, maximises the window
    /// and shares its width among the columns.
    void Reset();

private:
    bool SavePort(const std::string& text);
    void SaveSound(bool on);
    void SaveTabs(const std::array<bool, 3>& shown);

    Parts parts_;
    std::int32_t shownPort_ = 0;
};

}  // namespace tallyhorn
