#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "config/PreferencesHost.h"
#include "config/PrivateProfile.h"
#include "platform/MessageBoxes.h"
#include "platform/PendingEvents.h"

namespace tallyhorn {

/// The contents of the preferences dialog: as loaded from the settings file, or as changed by the user.
struct PreferenceFields {
    std::string Port;
    std::string Seperator;  ///< compatibility: spelled as the key in the settings file
    std::array<bool, 3> ShowTab{};
    bool Sound = false;
    bool DayFirst = false;

    bool operator==(const PreferenceFields&) const = default;
};

/// The commands of the preferences dialog: load, validate, save, reset.  Each opening of the dialog needs a
/// new object, which remembers the port that the dialog showed.  Errors in writing the settings file are
/// ignored.
class Preferences {
public:
    /// The objects that the commands use.  They must outlive this object.
    struct Parts {
        PrivateProfile& Profile;
        PreferencesHost& Host;
        MessageBoxes& Boxes;
        PendingEvents& Events;
    };
    explicit Preferences(const Parts& parts) : parts_(parts) {}

    /// Reads the settings file.  A missing key has the value 0 or "".
    PreferenceFields Load();

    /// Returns whether the fields may be saved; shows a message box if not.
    bool Validate(const PreferenceFields& fields);

    /// Writes the fields to the settings file and applies them to the console.  Validate must have accepted
    /// them.  Returns true if all fields were saved, so that the dialog may close.
    ///
    /// Opens the endpoint if the port differs from the shown one, or if the endpoint is not listening because
    /// its last attempt failed.
    ///
    /// compatibility: if the port does not fit into 16 bits, the command ends without a message: it writes
    /// the port if that fits into 32 bits, but does not open the endpoint and saves no other field.
    bool Save(const PreferenceFields& fields);

    /// Returns a line to show below the port while the user types it, if Save would not open it: that it is
    /// used from the next start, or that it is no UDP port.  Returns an empty text for other ports.
    std::string_view NoteAbout(const std::string& port) const;

    /// Asks for confirmation.  If the user answers Yes, deletes the stored window size and column widths,
    /// maximises the window and divides its width among the columns.
    void Reset();

private:
    bool IsOpenedBySave(std::int32_t port) const;
    bool SavePort(const std::string& text);
    void SaveSound(bool on);
    void SaveTabs(const std::array<bool, 3>& shown);

    Parts parts_;
    std::int32_t shownPort_ = 0;
};

}  // namespace tallyhorn
