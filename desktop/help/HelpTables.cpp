#include "desktop/help/HelpTables.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <utility>

namespace tallyhorn {
namespace {

constexpr std::size_t LongestHelpText = 300;

bool IsSameLetter(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

/// Removes the text up to and including the next tag and returns the tag without "<" and ">", or nothing if
/// there is no further tag.
std::optional<std::string_view> TakeTag(std::string_view& text) {
    const std::size_t begin = text.find('<');
    const std::size_t end = begin == std::string_view::npos ? begin : text.find('>', begin);
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view tag = text.substr(begin + 1, end - begin - 1);
    text.remove_prefix(end + 1);
    return tag;
}

bool IsTag(std::string_view tag, std::string_view name) {
    const std::string_view begin = tag.substr(0, name.size());
    return std::equal(begin.begin(), begin.end(), name.begin(), name.end(), IsSameLetter) &&
           (tag.size() == name.size() || std::isspace(static_cast<unsigned char>(tag[name.size()])) != 0);
}

/// Returns the text in quotes after `name=`, or an empty text if there is none.
std::string_view Attribute(std::string_view tag, std::string_view name) {
    const auto found = std::search(tag.begin(), tag.end(), name.begin(), name.end(), IsSameLetter);
    if (found == tag.end())
        return {};
    tag.remove_prefix(static_cast<std::size_t>(found - tag.begin()) + name.size());
    if (!tag.starts_with("=\""))
        return {};
    tag.remove_prefix(2);
    return tag.substr(0, std::min(tag.find('"'), LongestHelpText));
}

/// Replaces the four entities that can occur in an attribute by their characters.
std::string Plain(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, char>, 4> Names = {
        {{"&quot;", '"'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}}};
    std::string plain;
    while (!text.empty()) {
        const auto* const name = std::find_if(Names.begin(), Names.end(), [text](const auto& candidate) {
            return text.starts_with(candidate.first);
        });
        plain += name == Names.end() ? text.front() : name->second;
        text.remove_prefix(name == Names.end() ? 1 : name->first.size());
    }
    return plain;
}

std::optional<std::uint32_t> TakeNumber(std::string_view& bytes, std::size_t size) {
    if (bytes.size() < size)
        return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = size; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[i]);
    bytes.remove_prefix(size);
    return number;
}

std::string UpToNul(std::string_view bytes) {
    return std::string(bytes.substr(0, std::min(bytes.find('\0'), LongestHelpText)));
}

}  // namespace

std::vector<HelpEntry> ParseHelpContents(std::string_view text) {
    std::vector<HelpEntry> entries;
    HelpEntry entry;
    int depth = 0;
    while (const auto tag = TakeTag(text)) {
        if (IsTag(*tag, "ul")) {
            depth = std::min(depth + 1, DeepestHelpEntry + 1);
        } else if (IsTag(*tag, "/ul")) {
            depth = std::max(depth - 1, 0);
        } else if (IsTag(*tag, "object")) {
            entry = {{}, {}, std::max(depth - 1, 0)};
        } else if (IsTag(*tag, "param")) {
            const std::string_view name = Attribute(*tag, " name");
            if (name == "Name")
                entry.Name = Plain(Attribute(*tag, " value"));
            else if (name == "Local")
                entry.Local = Plain(Attribute(*tag, " value"));
        } else if (IsTag(*tag, "/object") && !entry.Name.empty()) {
            entries.push_back(std::exchange(entry, {}));
            if (entries.size() == MostHelpEntries)
                break;
        }
    }
    return entries;
}

std::map<std::uint32_t, std::string> ParseHelpContexts(std::string_view numbers, std::string_view strings) {
    std::map<std::uint32_t, std::string> pages;
    TakeNumber(numbers, 4);  // skips the size of the table
    while (pages.size() < MostHelpEntries) {
        const auto context = TakeNumber(numbers, 4);
        const auto offset = TakeNumber(numbers, 4);
        if (!offset)
            break;
        if (*offset < strings.size())
            pages[*context] = UpToNul(strings.substr(*offset));
    }
    return pages;
}

bool IsModestHtml(std::string_view html) {
    constexpr int MostTags = 20'000;
    constexpr int DeepestTable = 4;
    constexpr std::ptrdiff_t LongestNumber = 4;
    int tags = 0;
    int depth = 0;
    while (const auto tag = TakeTag(html)) {
        depth += IsTag(*tag, "table") ? 1 : IsTag(*tag, "/table") ? -1 : 0;
        std::ptrdiff_t digits = 0;
        for (const char character : *tag) {
            digits = character >= '0' && character <= '9' ? digits + 1 : 0;
            if (digits > LongestNumber)
                return false;
        }
        if (++tags > MostTags || depth > DeepestTable)
            return false;
    }
    return true;
}

HelpFacts ParseHelpFacts(std::string_view bytes) {
    HelpFacts facts;
    TakeNumber(bytes, 4);  // skips the version
    while (const auto code = TakeNumber(bytes, 2)) {
        const std::size_t size = TakeNumber(bytes, 2).value_or(0);
        const std::string value = UpToNul(bytes.substr(0, size));
        bytes.remove_prefix(std::min(size, bytes.size()));
        if (*code == 0)
            facts.ContentsFile = value;
        else if (*code == 2)
            facts.StartPage = value;
        else if (*code == 3)
            facts.Title = value;
    }
    return facts;
}

}  // namespace tallyhorn
