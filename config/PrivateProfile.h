#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/ProfileFunctions.h"

namespace tallyhorn {

/// Reads and writes one profile (INI) file through the profile functions.  Owns the file's path and caches
/// nothing of its content.
///
/// No function throws.  A function that fails returns false, and may have filled its output argument in part.
class PrivateProfile {
public:
    PrivateProfile(ProfileFunctions& functions, Clock& clock) : functions_(functions), clock_(clock) {}

    /// INIFileName returns the file's full path, and SetINIFileName sets it without checking that the file
    /// exists.
    const std::string& INIFileName() const { return iniFileName_; }
    void SetINIFileName(std::string path) { iniFileName_ = std::move(path); }

    /// Creates the file, or empties it if it exists.
    bool CreateINIFile();
    /// Reads a value.  Returns false and sets `stringValue` to "" if the value is missing, empty or longer
    /// than 509 characters.
    bool GetStringValue(const std::string& sectionName, const std::string& keyName, std::string& stringValue);
    /// Reads a number.  Leaves `intValue` unchanged if the key is missing, and sets it to 0 if the value is
    /// not a number.  Always returns true.
    bool GetIntValue(const std::string& sectionName, const std::string& keyName, std::int32_t& intValue);
    bool WriteString(const std::string& sectionName, const std::string& keyName,
                     const std::string& valueName);
    /// Lists the section names.  If there are none, retries for two seconds before it returns an empty list.
    /// compatibility: fails if the names together occupy more than 32,767 bytes.
    bool GetSectionNames(std::vector<std::string>& sections);
    /// Lists the keys of the section's entries, and lines without "=" as they are.  If the section's text
    /// exceeds 4,093 characters, the lines beyond that are missing.  compatibility: always returns false,
    /// even on success.
    bool GetKeyNames(const std::string& sectionName, std::vector<std::string>& keyNames);
    /// Lists the section's lines as key=value.  In all else it behaves as `GetKeyNames`, and also always
    /// returns false.
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
