#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

/// Owns the bytes of one profile (INI) file, and reads and changes them exactly as the profile functions of
/// Windows do.  Accepts any bytes; every operation takes time linear in the length of the text.
///
/// A line ends at CR, LF or CR LF.  Blanks (space, tab, vertical tab, form feed, ^Z) around lines, names and
/// values are ignored, and a NUL ends the name or value that contains it.  A line that starts with "[" and
/// contains "]" is a section's header; the section's name ends at the last "]".  A line that starts with ";"
/// is a comment.  Any other line is an entry: a name alone, or name=value.  Names are compared without regard
/// to case, and the first of several matches is used.  The lines before the first header form a section whose
/// name is empty.
class ProfileText {
public:
    explicit ProfileText(std::string bytes) : bytes_(std::move(bytes)) {}

    const std::string& Bytes() const { return bytes_; }

    // Value and SetValue ignore blanks around their arguments `section` and `key`; the other functions do
    // not.

    /// Returns the value without its quotes, or nothing if the section has no line "key=...".
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    /// Returns the names of all sections except the nameless one, each followed by a NUL.  A name that occurs
    /// twice is listed twice.
    std::string SectionNames() const;
    /// Returns the names of the section's entries that contain "=", each followed by a NUL.
    std::string KeyNames(std::string_view section) const;
    /// Returns the section's entries as name=value with the quotes, or as the name alone, each followed by a
    /// NUL.
    std::string Entries(std::string_view section) const;

    // The functions below change only what they must: comments, blank lines, the order and line ends stay.
    // They do not check their arguments; a line end in an argument adds further lines to the file, as on
    // Windows.

    /// Replaces the value of the key.  If the key is missing, adds a line after the section's last entry; if
    /// the section is missing, too, first adds it at the end of the text.
    void SetValue(std::string_view section, std::string_view key, std::string_view value);
    void DeleteKey(std::string_view section, std::string_view key);
    /// Deletes the section's header and everything up to the next header.
    void DeleteSection(std::string_view section);

private:
    /// Positions in the text: the line without its line end, and the start of the next line.
    struct Line {
        std::size_t Begin;
        std::size_t TextEnd;
        std::size_t End;
    };
    /// Positions in the text: the start of the header, and the lines below it.  The nameless section has no
    /// header, so its HeaderBegin equals its Begin.
    struct Section {
        std::size_t HeaderBegin;
        std::size_t Begin;
        std::size_t End;
    };
    /// An entry, as views into the text.
    struct Entry {
        Line Where;
        std::string_view Name;
        std::optional<std::string_view> Value;
    };

    Line LineAt(std::size_t begin) const;
    std::string_view TextOf(const Line& line) const;
    std::optional<Section> FindSection(std::string_view name) const;
    /// Returns the entry in the line, or nothing if the line is blank or a comment.  The line must not be a
    /// header.
    std::optional<Entry> EntryOf(const Line& line) const;
    /// Calls `visit` for each entry of the section, in order.  Does nothing if `section` is empty.
    template <typename Visit>
    void VisitEntries(const std::optional<Section>& section, Visit visit) const;
    std::optional<Entry> FindKey(const std::optional<Section>& section, std::string_view key) const;
    /// Returns the position for a new entry.  This is directly after the last entry, so that a comment above
    /// the next header stays with that header.
    std::size_t EndOfEntries(const Section& section) const;
    void InsertLines(std::size_t position, std::string lines);

    std::string bytes_;
};

/// Returns the text without the pair of single or double quotes around it, if there is one.
std::string_view UnquoteProfileValue(std::string_view text);

/// Returns the number at the start of the value, modulo 2^32, or 0 if there is none.  Accepts control
/// characters and spaces before the number, a sign, and a prefix (0x, 0o or 0b, in lower case) for base 16, 8
/// or 2.
std::uint32_t ProfileInteger(std::string_view value);

}  // namespace tallyhorn
