#include "config/ProfileText.h"

#include <algorithm>
#include <utility>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::string_view LineEnds = "\r\n";
constexpr std::string_view NewLine = "\r\n";
constexpr std::string_view Blanks = " \t\v\f\x1A";
constexpr std::pair<std::string_view, unsigned> BasePrefixes[] = {{"0x", 16}, {"0o", 8}, {"0b", 2}};

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string_view CutAtNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && CompareNoCase(a, b) == 0;
}

/// Returns the name between the brackets, or nothing if the line is not a header.
std::optional<std::string_view> HeaderName(std::string_view line) {
    const std::string_view text = TrimBlanks(line);
    const std::size_t close = text.rfind(']');
    if (!text.starts_with('[') || close == std::string_view::npos)
        return std::nullopt;
    return CutAtNul(TrimBlanks(text.substr(1, close - 1)));
}

void AppendItem(std::string& list, std::string_view item) {
    list += item;
    list += '\0';
}

/// Returns the value of a digit, or 36, which is too large for every base, for any other character.
unsigned DigitValue(char character) {
    if (character >= '0' && character <= '9')
        return static_cast<unsigned>(character - '0');
    const char upper = ToUpper(character);
    return upper >= 'A' && upper <= 'F' ? static_cast<unsigned>(upper - 'A') + 10U : 36U;
}

/// Returns the base of the number, and removes the prefix that indicates the base.
unsigned TakeBase(std::string_view& digits) {
    for (const auto& [prefix, base] : BasePrefixes) {
        if (digits.starts_with(prefix)) {
            digits.remove_prefix(prefix.size());
            return base;
        }
    }
    return 10;
}

}  // namespace

ProfileText::Line ProfileText::LineAt(std::size_t begin) const {
    const std::size_t textEnd = std::min(bytes_.find_first_of(LineEnds, begin), bytes_.size());
    const std::size_t endLength = bytes_.compare(textEnd, 2, NewLine) == 0 ? 2 : 1;
    return {begin, textEnd, std::min(textEnd + endLength, bytes_.size())};
}

std::string_view ProfileText::TextOf(const Line& line) const {
    return std::string_view(bytes_).substr(line.Begin, line.TextEnd - line.Begin);
}

std::optional<ProfileText::Section> ProfileText::FindSection(std::string_view name) const {
    std::optional<Section> found;
    if (name.empty())
        found = Section{0, 0, bytes_.size()};
    for (std::size_t at = 0; at < bytes_.size();) {
        const Line line = LineAt(at);
        at = line.End;
        const std::optional<std::string_view> header = HeaderName(TextOf(line));
        if (!header)
            continue;
        if (found) {
            found->End = line.Begin;
            break;
        }
        if (SameName(*header, name))
            found = Section{line.Begin, line.End, bytes_.size()};
    }
    return found;
}

std::optional<ProfileText::Entry> ProfileText::EntryOf(const Line& line) const {
    const std::string_view text = TrimBlanks(TextOf(line));
    if (text.starts_with(';'))
        return std::nullopt;
    const std::size_t equals = text.find('=');
    Entry entry{line, CutAtNul(TrimBlanks(text.substr(0, equals))), std::nullopt};
    if (equals != std::string_view::npos)
        entry.Value = CutAtNul(TrimBlanks(text.substr(equals + 1)));
    else if (entry.Name.empty())
        return std::nullopt;
    return entry;
}

template <typename Visit>
void ProfileText::VisitEntries(const std::optional<Section>& section, Visit visit) const {
    const Section lines = section.value_or(Section{});
    for (std::size_t at = lines.Begin; at < lines.End;) {
        const Line line = LineAt(at);
        at = line.End;
        if (const std::optional<Entry> entry = EntryOf(line))
            visit(*entry);
    }
}

std::optional<ProfileText::Entry> ProfileText::FindKey(const std::optional<Section>& section,
                                                       std::string_view key) const {
    std::optional<Entry> found;
    VisitEntries(section, [&](const Entry& entry) {
        if (!found && SameName(entry.Name, key))
            found = entry;
    });
    return found;
}

std::optional<std::string> ProfileText::Value(std::string_view section, std::string_view key) const {
    const std::optional<Entry> entry = FindKey(FindSection(TrimBlanks(section)), TrimBlanks(key));
    if (!entry || !entry->Value)
        return std::nullopt;
    return std::string(UnquoteProfileValue(*entry->Value));
}

std::string ProfileText::SectionNames() const {
    std::string names;
    for (std::size_t at = 0; at < bytes_.size();) {
        const Line line = LineAt(at);
        at = line.End;
        const std::string_view name = HeaderName(TextOf(line)).value_or("");
        if (!name.empty())
            AppendItem(names, name);
    }
    return names;
}

std::string ProfileText::KeyNames(std::string_view section) const {
    std::string names;
    VisitEntries(FindSection(section), [&](const Entry& entry) {
        if (entry.Value)
            AppendItem(names, entry.Name);
    });
    return names;
}

std::string ProfileText::Entries(std::string_view section) const {
    std::string entries;
    VisitEntries(FindSection(section), [&](const Entry& entry) {
        entries += entry.Name;
        if (entry.Value) {
            entries += '=';
            entries += *entry.Value;
        }
        entries += '\0';
    });
    return entries;
}

std::size_t ProfileText::EndOfEntries(const Section& section) const {
    std::size_t end = section.Begin;
    VisitEntries(section, [&](const Entry& entry) { end = entry.Where.End; });
    return end;
}

void ProfileText::InsertLines(std::size_t position, std::string lines) {
    const bool afterLineEnd = position == 0 || LineEnds.find(bytes_[position - 1]) != std::string_view::npos;
    if (!afterLineEnd)
        lines.insert(0, NewLine);
    bytes_.insert(position, lines);
}

void ProfileText::SetValue(std::string_view section, std::string_view key, std::string_view value) {
    std::string assignment(TrimBlanks(key));
    assignment += '=';
    assignment += value;
    const std::optional<Section> found = FindSection(TrimBlanks(section));
    if (!found) {
        std::string lines = "[";
        lines += TrimBlanks(section);
        lines += "]\r\n";
        lines += assignment;
        InsertLines(bytes_.size(), lines.append(NewLine));
        return;
    }
    const std::optional<Entry> entry = FindKey(found, TrimBlanks(key));
    if (!entry) {
        InsertLines(EndOfEntries(*found), assignment.append(NewLine));
        return;
    }
    const Line& line = entry->Where;
    const std::string_view text = TextOf(line);
    const std::size_t equals = text.find('=');
    std::string changed(equals == std::string_view::npos ? CutAtNul(text) : text.substr(0, equals));
    changed += '=';
    changed += value;
    bytes_.replace(line.Begin, line.TextEnd - line.Begin, changed);
}

void ProfileText::DeleteKey(std::string_view section, std::string_view key) {
    const std::optional<Entry> entry = FindKey(FindSection(section), key);
    if (entry)
        bytes_.erase(entry->Where.Begin, entry->Where.End - entry->Where.Begin);
}

void ProfileText::DeleteSection(std::string_view section) {
    const std::optional<Section> found = FindSection(section);
    if (found)
        bytes_.erase(found->HeaderBegin, found->End - found->HeaderBegin);
}

std::string_view UnquoteProfileValue(std::string_view text) {
    const bool quoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return quoted ? text.substr(1, text.size() - 2) : text;
}

std::uint32_t ProfileInteger(std::string_view value) {
    while (!value.empty() && static_cast<unsigned char>(value.front()) <= ' ')
        value.remove_prefix(1);
    const bool negative = value.starts_with('-');
    if (negative || value.starts_with('+'))
        value.remove_prefix(1);
    const unsigned base = TakeBase(value);
    std::uint32_t number = 0;
    for (const char character : value) {
        const unsigned digit = DigitValue(character);
        if (digit >= base)
            break;
        number = number * base + digit;
    }
    return negative ? 0U - number : number;
}

}  // namespace tallyhorn
