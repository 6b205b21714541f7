#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallyhorn {

// Functions that read the tables inside a compiled help file.  They accept any bytes, take linear time, and
// limit the size of their results.

/// A line of the table of contents.
struct HelpEntry {
    std::string Name;
    std::string Local;  ///< the path of a page, possibly followed by "#" and an anchor; empty for a heading
    int Depth = 0;      ///< 0 for the lines at the outermost level
};

constexpr std::size_t MostHelpEntries = 2000;
constexpr int DeepestHelpEntry = 8;

/// Reads a contents file (.hhc).
std::vector<HelpEntry> ParseHelpContents(std::string_view text);

/// Reads the map from page numbers to paths from the contents of the streams "#IVB" and "#STRINGS".
std::map<std::uint32_t, std::string> ParseHelpContexts(std::string_view numbers, std::string_view strings);

/// Returns whether Qt can lay out the page in little time and memory.  It can if the page has a limited
/// number of tags, a limited depth of nested tables, and no number of more than four digits in a tag.
bool IsModestHtml(std::string_view html);

struct HelpFacts {
    std::string ContentsFile;
    std::string StartPage;
    std::string Title;
};
/// Reads the contents of the stream "#SYSTEM".
HelpFacts ParseHelpFacts(std::string_view bytes);

}  // namespace tallyhorn
