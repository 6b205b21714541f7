#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallyhorn {

// Functions that read the tables inside a compiled help file.  They accept any bytes, take linear time, and
// return no more than the bounds below.

/// A line of the table of contents.
struct HelpEntry {
    std::string Name;
    std::string Local;  ///< a page, or a page with "#" and an anchor; empty for a heading
    int Depth = 0;      ///< 0 for the outermost lines
};

constexpr std::size_t MostHelpEntries = 2000;
constexpr int DeepestHelpEntry = 8;

/// Reads a contents file (.hhc).
std::vector<HelpEntry> ParseHelpContents(std::string_view text);

/// Reads the pages by number from the streams "#IVB" and "#STRINGS".
std::map<std::uint32_t, std::string> ParseHelpContexts(std::string_view numbers, std::string_view strings);

/// Returns whether Qt can lay the page out in little time and memory: a bounded number of tags, a bounded
/// depth of tables, no numbers over four digits in tags.
bool IsModestHtml(std::string_view html);

struct HelpFacts {
    std::string ContentsFile;
    std::string StartPage;
    std::string Title;
};
/// Reads the stream "#SYSTEM".
HelpFacts ParseHelpFacts(std::string_view bytes);

}  // namespace tallyhorn
