#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "config/ProfileText.h"

namespace tallyhorn {

/// The encoding of a profile file, which a mark at its start identifies.  A file without a mark is ANSI.
enum class ProfileEncoding : std::uint8_t { Ansi, Utf8, Utf16LittleEndian, Utf16BigEndian };

/// Returns the encoding of a file that begins with `bytes`; the first three bytes suffice.
ProfileEncoding EncodingOf(std::string_view bytes);

/// Owns the content of one profile file in any ProfileEncoding.  All texts that the functions take and return
/// are ANSI; in returned texts, "?" replaces each character that ANSI lacks.  What no function changes
/// keeps all its characters in the file, even those that ANSI lacks.
class EncodedProfile {
public:
    explicit EncodedProfile(std::string_view bytes);

    /// Returns the file's bytes, in the encoding that it had.
    std::string Bytes() const;

    // The functions below do what those of ProfileText do.

    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    std::string SectionNames() const { return ToAnsi(text_.SectionNames()); }
    std::string KeyNames(std::string_view section) const { return ToAnsi(text_.KeyNames(Encode(section))); }
    std::string Entries(std::string_view section) const { return ToAnsi(text_.Entries(Encode(section))); }
    void SetValue(std::string_view section, std::string_view key, std::string_view value);
    void DeleteKey(std::string_view section, std::string_view key);
    void DeleteSection(std::string_view section) { text_.DeleteSection(Encode(section)); }

private:
    std::string ToAnsi(std::string_view text) const;
    std::string Encode(std::string_view ansi) const;

    ProfileEncoding encoding_;
    /// The bytes of an ANSI file; the content of any other file in UTF-8.  In both, line ends, brackets and
    /// "=" are the same bytes.
    ProfileText text_;
};

}  // namespace tallyhorn
