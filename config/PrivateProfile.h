#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/ProfileFunctions.h"

namespace tallyhorn {

/// Names one profile (INI) file and reads and writes it through the system's profile functions, which it does
/// not own; it keeps nothing of the content.  Called from the user-interface thread.
///
/// Nothing throws: a failure is the result false, with the "out" argument as far as it had got.
class PrivateProfile {
public:
    PrivateProfile(ProfileFunctions& functions, Clock& clock) : functions_(functions), clock_(clock) {}

    /// The file's full path, handed on as it stands; nothing checks that it is there.
    const std::string& INIFileName() const { return iniFileName_; }
    void SetINIFileName(std::string path) { iniFileName_ = std::move(path); }

    /// Creates the file, or empties the one that is there.
    bool CreateINIFile();
    /// False and an empty text where the value is missing, empty, or longer than 509 characters.
    bool GetStringValue(const std::string& sectionName, const std::string& keyName, std::string& stringValue);
    /// `intValue` comes in as the default.  Always true; a value that is no number gives 0.
    bool GetIntValue(const std::string& sectionName, const std::string& keyName, std::int32_t& intValue);
    bool WriteString(const std::string& sectionName, const std::string& keyName,
                     const std::string& valueName);
    /// Tries for two seconds where the file has no sections, and then gives none.  The list's length must fit
    /// a 16-bit integer; a longer list is a failure.
    bool GetSectionNames(std::vector<std::string>& sections);
    /// The keys of the section's entries, and as they stand the lines without "=".  Always false: only the
    /// entries tell.  Of a section whose text is over 4,093 characters the end is lost, with the line that
    /// it cuts.
    bool GetKeyNames(const std::string& sectionName, std::vector<std::string>& keyNames);
    /// As `GetKeyNames`, but whole lines.
    bool GetEntries(const std::string& sectionName, std::vector<std::string>& entries);
    std::int32_t GetNumEntriesInSection(const std::string& sectionName);
    bool DeleteSection(const std::string& sectionNameToDelete);
    bool DeleteKey(const std::string& sectionName, const std::string& keyName);

private:
    bool ReadSectionNames(std::string& names);
    std::vector<std::string> ReadEntries(const std::string& sectionName);

    ProfileFunctions& functions_;
    Clock& clock_;
    std::string iniFileName_;
};

}  // namespace tallyhorn
