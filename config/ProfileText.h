#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

/// Owns the bytes of one profile (INI) file, and reads and changes them exactly as Windows' profile functions
/// would.  Accepts any bytes; every operation takes time linear in the length of the text.
///
/// A line ends at CR, LF or CR LF.  Blanks (space, tab, vertical tab, form feed, ^Z) around lines, names and
/// values are ignored, and a NUL ends the name or value that contains it.  A line that starts with "[" and
/// contains "]" is a section's header, whose name ends at the last "]".  A line that starts with ";" is a
/// comment.  Any other line is an entry: a name alone, or name=value.  Names match regardless of case, and of
/// several matches the first is used.  The lines before the first header form a section whose name is empty.
class ProfileText {
public:
    explicit ProfileText(std::string bytes) : bytes_(std::move(bytes)) {}

    const std::string& Bytes() const { return bytes_; }

    // Value and SetValue ignore blanks around the section and the key that they are given; the other
    // functions do not.

    /// Returns the value without its quotes, or nothing if the section has no line "key=...".
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    /// Returns the names of all sections but the nameless one, each followed by a NUL.  A name that occurs
    /// twice is listed twice.
    std::string SectionNames() const;
    /// Returns the names of the section's entries that contain "=", each followed by a NUL.
    std::string KeyNames(std::string_view section) const;
    /// Returns the section's entries as name=value with the quotes, or as the name alone, each followed by a
    /// NUL.
    std::string Entries(std::string_view section) const;

    // The functions below keep every byte that they need not change: comments, blank lines, order, line ends.
    // They do not check their arguments; a line end in one makes further lines, as on Windows.

    /// Replaces the value in its line.  Adds a line after the section's last entry if the key is missing, and
    /// adds the section at the end of the text if that is missing too.
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
    /// An entry.  The views point into the text.
    struct Entry {
        Line Where;
        std::string_view Name;
        std::optional<std::string_view> Value;
    };

    Line LineAt(std::size_t begin) const;
    std::string_view TextOf(const Line& line) const;
    std::optional<Section> FindSection(std::string_view name) const;
    /// Returns nothing for a blank line and for a comment.  The line must not be a header.
    std::optional<Entry> EntryOf(const Line& line) const;
    /// Calls `visit` for each entry of the section, in order; not at all without a section.
    template <typename Visit>
    void VisitEntries(const std::optional<Section>& section, Visit visit) const;
    std::optional<Entry> FindKey(const std::optional<Section>& section, std::string_view key) const;
    /// Returns the position for a new entry.  It is directly after the last entry, so that a comment above
    /// the next header stays with that header.
    std::size_t EndOfEntries(const Section& section) const;
    void InsertLines(std::size_t position, std::string lines);

    std::string bytes_;
};

/// Returns the text without the pair of single or double quotes around it, if there is one.
std::string_view UnquoteProfileValue(std::string_view text);

/// Returns the number at the start of the value, modulo 2^32, or 0 if there is none.  The number may have
/// control characters and spaces before it, a sign, and the prefix 0x, 0o or 0b (lower case) for base 16, 8
/// or 2.
std::uint32_t ProfileInteger(std::string_view value);

}  // namespace tallyhorn
