#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

/// The bytes of one profile (INI) file, read and changed as Windows' profile functions would: owns the text
/// and nothing else.  Any one thread may use it; every operation is one pass over the text and takes any
/// bytes.
///
/// A line ends at CR, LF or both.  Blanks (space, tab, vertical tab, form feed, ^Z) around lines, names and
/// values do not count, and a NUL ends the name or value that it is in.  A line is a
/// section's header where it starts with "[" and holds a "]" (the last one counts), a comment where it starts
/// with ";", else an entry: a name alone, or name=value.  Names match without regard to case and the first
/// match wins.  The lines before the first header are the section without a name.
class ProfileText {
public:
    explicit ProfileText(std::string bytes) : bytes_(std::move(bytes)) {}

    const std::string& Bytes() const { return bytes_; }

    // Blanks around a section and key that a value is read from or set under do not count; the other
    // operations take the names as they stand.

    /// Unquoted; nothing where there is no such key=.
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    /// The names of the sections that have one, repeated ones too, a NUL after each.
    std::string SectionNames() const;
    /// The names of the section's entries that have a "=", a NUL after each.
    std::string KeyNames(std::string_view section) const;
    /// The section's entries as name=value, quotes kept, or as the name alone; a NUL after each.
    std::string Entries(std::string_view section) const;

    // What the changes do not touch stays byte for byte: comments, blank lines, the order, other line ends.
    // The texts are put in as they are; one that holds a line end makes further lines, as on Windows.

    /// Changes the value in its place, or adds a line behind the section's last entry, or the section at the
    /// end.
    void SetValue(std::string_view section, std::string_view key, std::string_view value);
    void DeleteKey(std::string_view section, std::string_view key);
    /// Takes the section out with everything up to the next header.
    void DeleteSection(std::string_view section);

private:
    /// Positions in the text: the line's own characters, and where the next line starts.
    struct Line {
        std::size_t Begin;
        std::size_t TextEnd;
        std::size_t End;
    };
    /// The header's start (that of the nameless section: its body's), and the lines below it.
    struct Section {
        std::size_t HeaderBegin;
        std::size_t Begin;
        std::size_t End;
    };
    /// The parts of an entry's line; they look into the text.
    struct Entry {
        Line Where;
        std::string_view Name;
        std::optional<std::string_view> Value;
    };

    Line LineAt(std::size_t begin) const;
    std::string_view TextOf(const Line& line) const;
    std::optional<Section> FindSection(std::string_view name) const;
    /// Nothing for a blank line and a comment.  The caller has ruled out headers.
    std::optional<Entry> EntryOf(const Line& line) const;
    /// Hands the section's entries to `visit` in their order; none where there is no section.
    template <typename Visit>
    void VisitEntries(const std::optional<Section>& section, Visit visit) const;
    std::optional<Entry> FindKey(const std::optional<Section>& section, std::string_view key) const;
    /// Where a new entry goes: behind the last one, so that a comment above the next section stays with it.
    std::size_t EndOfEntries(const Section& section) const;
    void InsertLines(std::size_t position, std::string lines);

    std::string bytes_;
};

/// The text without the one pair of like quotes that may stand around it.
std::string_view UnquoteProfileValue(std::string_view text);

/// The number that a value starts with, modulo 2^32; 0 where it starts with none.  Control characters and
/// spaces may lead, then a sign, then 0x, 0o or 0b (small letters) for another base than ten.
std::uint32_t ProfileInteger(std::string_view value);

}  // namespace tallyhorn
