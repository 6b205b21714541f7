// The profile text code on any bytes: the first line is the section, key and value to work with, the rest the
// file.

#include "config/ProfileText.h"

#include <algorithm>
#include <cstdint>

#include "fuzz/Require.h"

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

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string section = TakeField(text);
    const std::string key = TakeField(text);
    const std::string value = TakeField(text);
    ProfileText profile{std::string(text)};
    const std::string names = profile.SectionNames();
    Require(names.size() <= text.size() && (names.empty() || names.back() == '\0'));
    profile.KeyNames(section);
    tallyhorn::ProfileInteger(profile.Value(section, key).value_or(value));

    profile.SetValue(section, key, value);
    // A plain name is found again, whatever the file holds.
    if (key.find_first_of("=;[]") == std::string::npos && section.find_first_of("[]") == std::string::npos)
        Require(profile.Value(section, key).has_value());
    Require(profile.Bytes().size() <= text.size() + section.size() + key.size() + value.size() + 9);
    profile.DeleteKey(section, key);
    profile.DeleteSection(section);
    Require(profile.Entries(section).size() <= profile.Bytes().size() + 1);
    return 0;
}
