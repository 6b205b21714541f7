// Reads and changes arbitrary bytes as an INI file.  The input begins with a section, a key and a value, each
// ended by "|", a line end or NUL; the rest is the file.

#include "config/ProfileText.h"

#include <algorithm>
#include <cstdint>

#include "fuzz/Require.h"
#include "records/AnsiText.h"

namespace {

using tallyhorn::ProfileText;
using tallyhorn::Require;

std::string TakeField(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_of(std::string_view("|\n\r\0", 4)), text.size());
    std::string field(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return field;
}

}  // namespace

namespace {

/// Requires that a new value is read back and that deleting it restores the file, except for a line end that
/// the last line may have lacked.
void RequireUnharmed(const std::string& bytes) {
    for (const char* const section : {"", "k", "\xE4 new"}) {
        ProfileText profile(bytes);
        const std::string names = profile.SectionNames();
        const std::string entries = profile.Entries(section);
        profile.SetValue(section, "new \xE4", " 'value'");
        Require(profile.Value(section, "NEW \xC4") == "value");
        Require(profile.Entries(section) == entries + "new \xE4='value'" + '\0');
        if (profile.SectionNames() == names)
            profile.DeleteKey(section, "NEW \xC4");
        else
            profile.DeleteSection(section);
        const std::string& after = profile.Bytes();
        Require(after.starts_with(bytes));
        Require(after.size() == bytes.size() || after.substr(bytes.size()) == "\r\n");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string section = TakeField(text);
    const std::string key = TakeField(text);
    const std::string value = TakeField(text);
    if (tallyhorn::UpperCase(text).find("NEW") == std::string::npos)
        RequireUnharmed(std::string(text));
    ProfileText profile{std::string(text)};
    const std::string names = profile.SectionNames();
    Require(names.size() <= text.size() && (names.empty() || names.back() == '\0'));
    profile.KeyNames(section);
    tallyhorn::ProfileInteger(profile.Value(section, key).value_or(value));

    profile.SetValue(section, key, value);
    // After SetValue, a key without special characters must be found in any file.
    if (key.find_first_of("=;[]") == std::string::npos && section.find_first_of("[]") == std::string::npos)
        Require(profile.Value(section, key).has_value());
    Require(profile.Bytes().size() <= text.size() + section.size() + key.size() + value.size() + 9);
    profile.DeleteKey(section, key);
    profile.DeleteSection(section);
    Require(profile.Entries(section).size() <= profile.Bytes().size() + 1);
    return 0;
}
